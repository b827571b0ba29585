#include "Html.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon::pages {

namespace {

constexpr const char* kStyle =
    "body{font:16px/1.5 sans-serif;max-width:50rem;margin:2rem auto;padding:0 1rem;color:#222;background:#fff}"
    "h1,h2{line-height:1.2}h2{margin-top:2.5rem;border-top:1px solid #ccc;padding-top:1rem}"
    "table{border-collapse:collapse;margin:1rem 0}td,th{border:1px solid #ccc;padding:.25rem .6rem;text-align:left;"
    "vertical-align:top}th{background:#f2f2f2;font-weight:600}code,pre{font-family:monospace;background:#f6f6f6}"
    "pre{padding:.8rem;overflow-x:auto}img{max-width:100%;border:1px solid #ccc}figure{margin:1rem 0}"
    "nav{font-size:.9rem}";

}  // namespace

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string page(std::string_view path, std::string_view title, std::string_view body) {
    std::string toRoot;
    for (auto depth = std::count(path.begin(), path.end(), '/'); depth > 0; --depth) toRoot += "../";
    return fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>{} - Quillon</title>\n"
        "<style>{}</style>\n</head>\n<body>\n<nav><a href=\"{}index.html\">Quillon</a></nav>\n{}</body>\n</html>\n",
        escaped(title), kStyle, toRoot, body);
}

}  // namespace quillon::pages
