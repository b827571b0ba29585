// Writes the documentation pages that the applet names: the explanations of docs/feature_blocks, and below each the
// parameters that belong to it, as the applet itself describes them. Also the page of all result codes.
#include <fmt/format.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>

#include "Html.h"
#include "ParameterSection.h"
#include "fabrix/parameter_ids.h"
#include "host/Grabber.h"
#include "host/ParameterCatalogue.h"
#include "host/ResultCodes.h"

namespace {

using namespace quillon;
namespace fs = std::filesystem;

/// A page that the applet names: its parameters as HTML, and their names with links.
struct FeaturePage {
    std::string sections;
    std::string links;
};

std::string readFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error(fmt::format("{}: the explanation of a page is missing", file.string()));
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out << text;
    if (!out.flush()) throw std::runtime_error(fmt::format("{}: cannot be written", file.string()));
}

/// \return the text between the tags of the first heading, which is the page's title
std::string titleOf(const std::string& explanation) {
    const size_t begin = explanation.find("<h1>") + 4;
    const size_t end = explanation.find("</h1>");
    if (end == std::string::npos || begin > end) throw std::runtime_error("an explanation begins with its <h1> title");
    return explanation.substr(begin, end - begin);
}

/// \return the applet's answer to a question about a parameter; empty when it has none
std::string answer(const host::Grabber& grabber, int question, const std::string& name) {
    std::string text = name;
    // An unknown name comes back as it was.
    return grabber.read(question, text) < 0 || text == name ? std::string() : text;
}

std::map<std::string, FeaturePage> collectPages(const host::Grabber& grabber) {
    std::map<std::string, FeaturePage> pages;
    const host::ParameterCatalogue catalogue(grabber);
    for (const host::ParameterInfo& parameter : catalogue.parameters()) {
        const std::string path = answer(grabber, FG_DOC_URL, parameter.name);
        if (path.empty()) continue;
        FeaturePage& page = pages[path];
        page.sections += pages::parameterSection(grabber, parameter, answer(grabber, FG_PARAM_DESCR, parameter.name));
        page.links += fmt::format("<li><a href=\"{}#{}\"><code>{}</code></a> {}</li>\n", path, parameter.name,
                                  parameter.name, pages::escaped(parameter.displayName));
    }
    return pages;
}

/// An explanation that belongs to no page would never be read.
void refuseStrays(const fs::path& explanations, const std::map<std::string, FeaturePage>& pages) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(explanations)) {
        const std::string path = fs::relative(entry.path(), explanations.parent_path()).generic_string();
        if (entry.is_regular_file() && !pages.contains(path)) {
            throw std::runtime_error(fmt::format("{}: the applet names no such page", entry.path().string()));
        }
    }
}

std::string resultCodePage() {
    std::string body =
        "<h1>Result codes</h1>\n<p>What the exported functions answer. Codes that are not in the table are those of "
        "the hardware-access library, passed on unchanged.</p>\n"
        "<table>\n<tr><th>Code</th><th>Name</th><th>Cause</th><th>Remedy</th></tr>\n";
    for (const host::ResultCodeRow& row : host::resultCodes()) {
        body += fmt::format("<tr><td>{}</td><td><code>{}</code></td><td>{}</td><td>{}</td></tr>\n", row.code, row.name,
                            pages::escaped(row.meaning), pages::escaped(row.remedy));
    }
    return pages::page("result_codes.html", "Result codes", body + "</table>\n");
}

void writePages(const fs::path& applet, const fs::path& docs, const fs::path& target) {
    const host::AppletLibrary library(applet);
    const host::Grabber grabber(library);
    const std::map<std::string, FeaturePage> found = collectPages(grabber);
    refuseStrays(docs / "feature_blocks", found);
    std::string index =
        "<h1>Quillon</h1>\n<p>The feature blocks of the applet and their parameters, as they are when the board has "
        "just been opened. <a href=\"result_codes.html\">Result codes</a> have a page of their own.</p>\n";
    for (const auto& [path, feature] : found) {
        const std::string explanation = readFile(docs / path);
        const std::string title = titleOf(explanation);
        writeFile(target / path, pages::page(path, title, explanation + feature.sections));
        index += fmt::format("<h2><a href=\"{}\">{}</a></h2>\n<ul>\n{}</ul>\n", path, title, feature.links);
    }
    writeFile(target / "result_codes.html", resultCodePage());
    fs::copy(docs / "pictures", target / "pictures",
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    // Last: the build takes it for the sign that all pages are there.
    writeFile(target / "index.html", pages::page("index.html", "Parameters", index));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        fmt::print(stderr, "usage: quillon_pages APPLET DOCS TARGET\n");
        return 2;
    }
    try {
        writePages(argv[1], argv[2], argv[3]);
    } catch (const std::exception& error) {
        fmt::print(stderr, "quillon_pages: {}\n", error.what());
        return 1;
    }
    return 0;
}
