#include <string>

#include "StandardApplets/grabber_basis/Fg_ConfigFileParser.h"
#include "StandardApplets/grabber_basis/PSFx4/PSKneeLut.h"
#include "tests/TemporaryFolder.h"
#include "tests/core/AllTypes.h"
#include "tests/core/GrabberTest.h"

namespace {

const std::string kHeader =
    "[Kamerasektion]\n\nConfigFileVersion=2.0;\nHersteller='Generic-CameraLink';\nTyp='Quillon8';\nVersion='1.1';\n"
    "LoadAppletId=4711;\nAktivePort=0;\n";

class ConfigFileTest : public ModuleTest {
protected:
    ConfigFileTest() : module(add<AllTypes>()) {
        master().setCameraType("Quillon8");
        master().setCameraVersion("1.1");
        mFabrixBoard->setAppletID(4711);
    }
    int save(const std::string& name) { return Fg_saveConfig(handle(), files.file(name).c_str()); }
    int loadText(const std::string& content) { return Fg_loadConfig(handle(), files.write("in.mcf", content).c_str()); }
    /// Loads a header and then these lines.
    int loadLines(const std::string& lines) { return loadText(kHeader + "\n[Port A]\n" + lines); }

    TemporaryFolder files;
    AllTypes& module;
};

TEST_F(ConfigFileTest, LoadTestsNeitherLimitsNorAccessAndEndsWithAFullUpdate) {
    module.updatedPorts.clear();
    EXPECT_EQ(loadText(kHeader + "\n[Port A]\nFG_INTEGER=12345;\n"), 0);
    EXPECT_EQ(module.integers[0][kInteger], 12345);
    EXPECT_THAT(module.updatedPorts, ElementsAre(0));
}

TEST_F(ConfigFileTest, ValuesAreReadByTheseRules) {
    const struct {
        const char* lines;
        int expected;  // 55 where the line must not count
    } cases[] = {
        {"FG_INTEGER=5;\n",                5 },
        {"FG_INTEGER=5",                   5 },
        {"FG_INTEGER=5;\r\n",              5 },
        {"FG_INTEGER= -7x;\n",             -7},
        {"FG_INTEGER=4294967295;\n",       -1},
        {"FG_INTEGER=;\n",                 0 },
        {"FG_INTEGER=",                    0 },
        {"FG_INTEGER=abc;\n",              0 },
        {"FG_INTEGER='8';\n",              8 },
        {"FG_INTEGER=3;\nFG_INTEGER=4;\n", 3 },
        {"\n[Port B]\nFG_INTEGER=6;\n",    6 },
        {" FG_INTEGER=5;\n",               55},
        {"FG_INTEGERX=5;\n",               55},
        {"FG_INTEGER =5;\n",               55},
        {"FG_INTEGE=5;\n",                 55},
        {"fg_integer=5;\n",                55},
        {"FG_INTEGER=5Error;\n",           55},
        {"",                               55},
    };
    for (const auto& [lines, expected] : cases) {
        module.integers[0][kInteger] = 55;
        EXPECT_EQ(loadLines(lines), 0);
        EXPECT_EQ(module.integers[0][kInteger], expected) << lines;
    }
}

TEST_F(ConfigFileTest, HeadersThatPass) {
    for (const char* header :
         {"AktivePort=3;\nHersteller='Generic-CameraLink';\nTyp='Quillon8';\n[Kamerasektion]\n[Port "
          "A]\nAktivePort=0;\n",
          "Hersteller\nHersteller=Generic-CameraLink=\nTyp\nTyp=='Quillon8'\n[Kamerasektion]\nAktivePort=x;\n"}) {
        master().setActivePort(1);
        EXPECT_EQ(loadText(header), 0) << header;
        EXPECT_EQ(master().getActivePort(), 0);
    }
    master().setCameraType("Quillon8XXL");
    EXPECT_EQ(loadText(kHeader), 0);
}

TEST_F(ConfigFileTest, RefusedHeadersChangeNothing) {
    const auto replaced = [](const std::string& what, const std::string& by) {
        std::string header = kHeader;
        return header.replace(header.find(what), what.size(), by) + "[Port A]\nFG_INTEGER=5;\n";
    };
    std::string crLf;
    for (const char c : kHeader) crLf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    master().setActivePort(1);
    for (const std::string& content :
         {std::string(), std::string("\0\x01\xff\n=", 5), std::string(10'000'000, '='), crLf,
          std::string("[Kamerasektion]"), kHeader.substr(0, 60), replaced("Generic-CameraLink", "Other"),
          replaced("Generic-CameraLink", "generic-cameralink"), replaced("Generic-CameraLink", ""),
          replaced("Hersteller", "Manufactor"), replaced("Quillon8", "Quillon"), replaced("Quillon8", "Quillon8XXL"),
          replaced("Typ=", "SubTyp='x';\nTyp="), replaced("Typ=", "Kind="), replaced("AktivePort", " AktivePort"),
          replaced("AktivePort=0", "AktivePort=Error"), replaced("[Kamerasektion]", "[Kamera]")}) {
        EXPECT_EQ(loadText(content), FG_FILE_REJECTED) << content.substr(0, 200);
        EXPECT_EQ(lastError(), FG_FILE_REJECTED);
    }
    EXPECT_EQ(master().getActivePort(), 1);
    EXPECT_EQ(module.integers[0][kInteger], 0);
    EXPECT_THAT(module.loadedKeys, IsEmpty());
}

TEST_F(ConfigFileTest, FilesThatCannotBeLoadedOrSaved) {
    std::filesystem::create_directory(files.file("folder.mcf"));
    for (const std::string& name : {files.file("none.mcf"), files.write("a.cfg", kHeader), files.file("folder.mcf"),
                                    files.write("a.MCF", kHeader), std::string(5000, 'x') + ".mcf"}) {
        EXPECT_EQ(Fg_loadConfig(handle(), name.c_str()), FG_FILE_REJECTED) << name;
    }
    EXPECT_EQ(Fg_loadConfig(handle(), nullptr), FG_FILE_REJECTED);
    for (const std::string& name :
         {files.file("cfg.txt"), files.file("no/folder.mcf"), files.file("folder.mcf"), files.makeFull("full.mcf")}) {
        EXPECT_EQ(Fg_saveConfig(handle(), name.c_str()), FG_FILE_NOT_ACCESSIBLE) << name;
        EXPECT_EQ(lastError(), FG_FILE_NOT_ACCESSIBLE);
    }
    EXPECT_EQ(Fg_saveConfig(handle(), nullptr), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_FALSE(std::filesystem::exists(files / "cfg.txt"));
    EXPECT_EQ(save("a.mcf.bak"), 0);
}

TEST_F(ConfigFileTest, SavedFileHasTheseBytes) {
    master().setActivePort(1);
    module.integers[0] = {
        {kInteger,    -1        },
        {kEntry,      7         },
        {kLongerName, 2147483647}
    };
    module.doubles = {1.0 / 3, 1e-20};
    module.texts = {"a.html", " "};
    EXPECT_EQ(save("a.mcf"), 0);
    EXPECT_EQ(lastError(), 0);
    EXPECT_EQ(files.content("a.mcf"),
              "[Kamerasektion]\n"
              "\n"
              "ConfigFileVersion=2.0;\n"
              "Hersteller='Generic-CameraLink';\n"
              "Typ='Quillon8';\n"
              "Version='1.1';\n"
              "LoadAppletId=4711;\n"
              "AktivePort=1;\n"
              "\n"
              "[Port A]\n"
              "FG_INTEGER=-1;\n"
              "FG_DOUBLE=0.333333333333;\n"
              "FG_TEXT='a.html';\n"
              "FG_ENTRY=7;\n"
              "FG_OTHER of port 0\n"
              "FG_UNREADABLE=-1;\n"
              "FG_INTEGERX=2147483647;\n"
              "\n"
              "[Port B]\n"
              "FG_INTEGER=0;\n"
              "FG_DOUBLE=1e-20;\n"
              "FG_TEXT=' ';\n"
              "FG_ENTRY=0;\n"
              "FG_OTHER of port 1\n"
              "FG_UNREADABLE=-1;\n"
              "FG_INTEGERX=0;\n");
}

TEST_F(ConfigFileTest, ActivePortsThatDoNotExistAreHarmless) {
    add<PSKneeLut>();
    for (const int port : {7, -3, 2147483647}) {
        const std::string header = kHeader.substr(0, kHeader.find("AktivePort="));
        EXPECT_EQ(loadText(header + "AktivePort=" + std::to_string(port) + ";\n[Port A]\nFG_INTEGER=5;\n"), 0);
        EXPECT_EQ(master().getActivePort(), port);
        EXPECT_EQ(module.integers[0][kInteger], 5);
    }
    EXPECT_THAT(board.writes(), IsEmpty());
}

}  // namespace
