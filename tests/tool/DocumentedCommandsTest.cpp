#include <fstream>
#include <string>
#include <vector>

#include "tool/GrayPicture.h"
#include "tool/ToolRun.h"

namespace tooltest {
namespace {

const std::string kPictures = QUILLON_SOURCE "/docs/pictures";

/// An example with what it prints.
struct Example {
    std::string command;
    std::string output;
};

/// What the code blocks of the pages hold.
struct Pages {
    std::string script;  ///< commands that make the pictures
    std::vector<Example> examples;
};

void readPage(const std::string& path, Pages& pages) {
    constexpr const char* kIndent = "    ";
    std::ifstream file(path);
    bool isExample = false;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(kIndent)) {
            isExample = false;
            continue;
        }
        line.erase(0, 4);
        if (line.starts_with("$ ")) {
            pages.examples.push_back({line.substr(2), ""});
            isExample = true;
        } else if (isExample) {
            pages.examples.back().output += line + '\n';
        } else {
            pages.script += line + '\n';
        }
    }
}

Pages readPages() {
    Pages pages;
    for (const char* name : {"camera-side.md", "knee.md", "files.md", "acquire.md"}) {
        readPage(std::string(QUILLON_SOURCE "/docs/") + name, pages);
    }
    return pages;
}

/// Runs commands of the page from the folder of the sources, with another folder for the pictures.
ToolResult runCommands(std::string script, const std::string& pictures) {
    const std::string documented = "docs/pictures/";
    for (size_t at = 0; (at = script.find(documented, at)) != std::string::npos; at += pictures.size()) {
        script.replace(at, documented.size(), pictures + "/");
    }
    return runShell("set -e; tool=$1; quillon() { \"$tool\" \"$@\"; }; cd '" QUILLON_SOURCE "'\n" + script, kFast);
}

TEST(DocumentedCommandsTest, PicturesAreWhatTheirCommandsMake) {
    const TemporaryFolder made;
    const ToolResult result = runCommands(readPages().script, made.path().string());
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    ASSERT_THAT(filesIn(made.path()), SizeIs(testing::Ge(5)));
    EXPECT_EQ(filesIn(made.path()), filesIn(kPictures));
    for (const std::string& name : filesIn(made.path())) {
        SCOPED_TRACE(name);
        EXPECT_EQ(readPicture(made / name), readPicture(kPictures + "/" + name));
    }
    const GrayPicture scene = readPicture(QUILLON_SOURCE "/simulation/pictures/gears_1.png").crop(512, 320, 256, 192);
    EXPECT_EQ(readPicture(made / "taps-right.png"), scene);
    EXPECT_NE(readPicture(made / "taps-unchanged.png"), scene);
    const GrayPicture half = readPicture(made / "taps-half-right.png");
    EXPECT_EQ(half.crop(0, 0, 128, 192), scene.crop(0, 0, 128, 192));
    EXPECT_NE(half.crop(128, 0, 128, 192), scene.crop(128, 0, 128, 192));
}

TEST(DocumentedCommandsTest, ExamplesPrintWhatThePageShows) {
    const std::vector<Example> examples = readPages().examples;
    ASSERT_THAT(examples, Not(IsEmpty()));
    for (const Example& example : examples) {
        SCOPED_TRACE(example.command);
        const ToolResult result = runCommands(example.command + '\n', kPictures);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.output, example.output);
    }
}

TEST(DocumentedCommandsTest, FirstSessionOfTheReadmeRunsAsItStands) {
    Pages readme;
    readPage(QUILLON_SOURCE "/README.md", readme);
    const size_t begin = readme.script.find("quillon doctor");
    ASSERT_NE(begin, std::string::npos);
    std::string session = readme.script.substr(begin);
    const TemporaryFolder made;
    for (size_t at = 0; (at = session.find(" build/", at)) != std::string::npos;) {
        session.replace(at + 1, 5, made.path().string());
    }
    const ToolResult result = runCommands(session, kPictures);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(filesIn(made.path()),
                ElementsAre("camera.mcf", "frame_001.png", "frame_002.png", "frame_003.png", "histogram.png"));
}

}  // namespace
}  // namespace tooltest
