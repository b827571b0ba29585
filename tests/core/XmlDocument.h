#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "fabrix/applet.h"

/// \return the document of a port, asked for as a host does
inline std::string documentOf(Fg_Struct* grabber, int port = 0) {
    size_t size = 0;
    EXPECT_EQ(Fg_getParameterInfoXML(grabber, port, nullptr, &size), 0);
    std::string text(size, '?');
    EXPECT_EQ(Fg_getParameterInfoXML(grabber, port, text.data(), &size), 0);
    EXPECT_EQ(size, text.size());
    if (!text.empty()) text.pop_back();  // the terminator
    return text;
}

struct XmlElement {
    std::string tag;
    std::map<std::string, std::string> attributes;
    std::string text;
    std::vector<XmlElement> children;

    [[nodiscard]] std::string name() const { return attributes.contains("Name") ? attributes.at("Name") : ""; }
    /// \return the text of the first child with this tag, or an empty text
    [[nodiscard]] std::string textOf(std::string_view childTag) const {
        for (const XmlElement& child : children) {
            if (child.tag == childTag) return child.text;
        }
        return "";
    }
};

/// Reads a document of elements, attributes and text; throws std::runtime_error for one that is not well formed.
class XmlReader {
public:
    explicit XmlReader(std::string_view document) : mRest(document) {}

    XmlElement read() {
        expect("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
        skipBlanks();
        XmlElement root = element();
        skipBlanks();
        if (!mRest.empty()) refuse("text after the root");
        return root;
    }

private:
    [[noreturn]] void refuse(const std::string& reason) const {
        throw std::runtime_error(reason + " before: " + std::string(mRest.substr(0, 40)));
    }
    void expect(std::string_view text) {
        if (!mRest.starts_with(text)) refuse("missing " + std::string(text));
        mRest.remove_prefix(text.size());
    }
    void skipBlanks() { mRest.remove_prefix(std::min(mRest.find_first_not_of(" \n"), mRest.size())); }
    std::string takeName() {
        const auto isNameCharacter = [](char c) {
            return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == ':';
        };
        const auto end = std::find_if_not(mRest.begin(), mRest.end(), isNameCharacter);
        const std::string name(mRest.begin(), end);
        if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0]))) refuse("no name");
        mRest.remove_prefix(name.size());
        return name;
    }
    /// Takes the text up to one of the characters; only the five entities may stand in it.
    std::string takeText(std::string_view ends) {
        const size_t end = mRest.find_first_of(ends);
        if (end == std::string_view::npos) refuse("text without end");
        const std::string text(mRest.substr(0, end));
        for (size_t at = text.find('&'); at != std::string::npos; at = text.find('&', at + 1)) {
            constexpr std::array kEntities{"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
            if (std::none_of(kEntities.begin(), kEntities.end(),
                             [&](std::string_view entity) { return text.compare(at, entity.size(), entity) == 0; })) {
                refuse("bare ampersand in " + text);
            }
        }
        mRest.remove_prefix(end);
        return text;
    }
    void takeAttribute(XmlElement& element) {
        const std::string key = takeName();
        expect("=");
        if (!mRest.starts_with('"') && !mRest.starts_with('\'')) refuse("no quote");
        const std::string quote(mRest.substr(0, 1));
        expect(quote);
        const std::string value = takeText(quote + "<");
        expect(quote);
        if (!element.attributes.emplace(key, value).second) refuse("second " + key);
    }
    XmlElement element() {
        XmlElement result;
        expect("<");
        result.tag = takeName();
        while (mRest.starts_with(' ') || mRest.starts_with('\n')) {
            skipBlanks();
            takeAttribute(result);
        }
        expect(">");
        for (;;) {
            result.text += takeText("<");
            if (mRest.starts_with("</")) break;
            result.children.push_back(element());
        }
        expect("</" + result.tag + ">");
        return result;
    }

    std::string_view mRest;
};

/// \return what a GenApi document breaks of its rules: node names are unique, every reference names a node, and
///         every feature stands in exactly one category
inline std::vector<std::string> faultsOf(const XmlElement& root) {
    static const std::set<std::string> references{"pValue",    "pMin",  "pMax",     "pFeature",
                                                  "pIsLocked", "pPort", "pVariable"};
    std::vector<std::string> faults;
    std::map<std::string, int> timesInCategories;
    std::set<std::string> names;
    for (const XmlElement& node : root.children) {
        if (!names.insert(node.name()).second) faults.push_back("twice: " + node.name());
        for (const XmlElement& child : node.children) timesInCategories[child.text] += child.tag == "pFeature";
    }
    for (const XmlElement& node : root.children) {
        for (const XmlElement& child : node.children) {
            if (references.contains(child.tag) && !names.contains(child.text)) {
                faults.push_back(node.name() + " " + child.tag + ": " + child.text);
            }
        }
        const bool isFeature = node.tag == "Integer" || node.tag == "Float" || node.tag == "Enumeration";
        if (isFeature && timesInCategories[node.name()] != 1) faults.push_back("categories: " + node.name());
    }
    return faults;
}
