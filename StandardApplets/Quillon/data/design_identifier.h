#pragma once

/// Identifies the embedded design: a text of GUID form.
constexpr const char c_HAP_UID[] = "07e4fd2a-ee22-46be-8dc5-b36c36ce4b02";

static_assert(sizeof(c_HAP_UID) == 37, "36 characters and the terminator");
