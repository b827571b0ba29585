/// \file
/// Identity of this applet.
#pragma once

constexpr int kAppletId = 0xA410060;
constexpr unsigned kAppletVersion = 1;
constexpr unsigned kAppletRevision = 1;
constexpr int kBoardType = 0xA42;
constexpr int kInfoVersion = 0x10001;
