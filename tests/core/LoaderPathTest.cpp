#include <gtest/gtest.h>

#include <cstdlib>
#include <mutex>

#include "tavo_hal/src/platform/InstallationDirectory.h"
#include "tavo_hal/src/platform/SharedLibrary.h"
#include "tavo_hal/src/platform/SpinLockVariableGuard.h"

namespace {

using tavo::platform::directoryFromEnvironment;
using tavo::platform::directoryFromFilePath;

TEST(LoaderPathTest, InnermostMarkerFolderWins) {
    const std::pair<const char*, const char*> found[] = {
        {"/opt/rt5/Hardware Applets/fabrixIV/libQuillon.so",  "/opt/rt5"                     },
        {"/opt/rt5/lib/libQuillon.so",                        "/opt/rt5"                     },
        {"/opt/rt5/lib64/libQuillon.so",                      "/opt/rt5"                     },
        {"/opt/rt5/bin/a/b/c/libQuillon.so",                  "/opt/rt5"                     },
        {"/opt/rt5/dll/libQuillon.so",                        "/opt/rt5"                     },
        {"/opt/LIB64/libQuillon.so",                          "/opt"                         },
        {"/opt/hardware applets/x/libQuillon.so",             "/opt"                         },
        {"/opt/HARDWARE APPLETS/x/libQuillon.so",             "/opt"                         },
        {"/usr/lib/rt5/bin/libQuillon.so",                    "/usr/lib/rt5"                 },
        {"/usr/lib/rt5/Hardware Applets/lib/x/libQuillon.so", "/usr/lib/rt5/Hardware Applets"},
        {"/opt//rt5///lib//libQuillon.so",                    "/opt//rt5"                    },
        {"/opt/rt5/lib///board//libQuillon.so",               "/opt/rt5"                     },
        {"/lib/libQuillon.so",                                ""                             },
        {"//lib/libQuillon.so",                               ""                             },
        {"../stage/lib/libQuillon.so",                        "../stage"                     },
        {"lib/libQuillon.so",                                 "."                            },
        {"./lib/libQuillon.so",                               "."                            },
    };
    for (const auto& [file, directory] : found) EXPECT_EQ(directoryFromFilePath(file), directory) << file;
}

TEST(LoaderPathTest, PathsWithoutMarkerFolderGiveNothing) {
    for (const char* file :
         {"", "libQuillon.so", "/libQuillon.so", "/opt/rt5/libQuillon.so", "/opt/library/libQuillon.so",
          "/opt/lib32/libQuillon.so", "/opt/Hardware/Applets/libQuillon.so", "/opt/li/b/libQuillon.so", "/opt/rt5/lib",
          "/opt/rt5/bin", "bin", "/", "//", "/opt/rt5/ lib/x.so", "/opt/xlib/x.so"}) {
        EXPECT_EQ(directoryFromFilePath(file), std::nullopt) << file;
    }
}

TEST(LoaderPathTest, PathMustFitWithItsTerminator) {
    const std::string folder = "/opt/lib/";
    const std::string longest = folder + std::string(1023 - folder.size(), 'x');
    EXPECT_EQ(directoryFromFilePath(longest), "/opt");
    EXPECT_EQ(directoryFromFilePath(longest + "x"), std::nullopt);
}

class LoaderEnvironmentTest : public testing::Test {
protected:
    LoaderEnvironmentTest() { forget(); }
    ~LoaderEnvironmentTest() override { forget(); }
    static void forget() {
        unsetenv("TAVODIR5_32");
        unsetenv("TAVODIR5");
    }
};

TEST_F(LoaderEnvironmentTest, NamesTheDirectoryWithoutTrailingSlashes) {
    EXPECT_EQ(directoryFromEnvironment(), std::nullopt);
    for (const auto& [value, directory] : {
             std::pair{"/opt/rt5",    "/opt/rt5"},
             {"/opt/rt5///", "/opt/rt5"},
             {"/",           "/"       },
             {"////",        "/"       },
             {"",            ""        },
             {"rt5/",        "rt5"     }
    }) {
        setenv("TAVODIR5", value, 1);
        EXPECT_EQ(directoryFromEnvironment(), directory) << value;
    }
}

TEST_F(LoaderEnvironmentTest, ThirtyTwoBitVariableWinsEvenWhenEmpty) {
    setenv("TAVODIR5", "/opt/rt5", 1);
    setenv("TAVODIR5_32", "/opt/rt5_32", 1);
    EXPECT_EQ(directoryFromEnvironment(), "/opt/rt5_32");
    setenv("TAVODIR5_32", "", 1);
    EXPECT_EQ(directoryFromEnvironment(), "");
}

TEST_F(LoaderEnvironmentTest, LongValueIsCutBeforeItsSlashesGo) {
    setenv("TAVODIR5", ("/" + std::string(2000, 'x')).c_str(), 1);
    EXPECT_EQ(directoryFromEnvironment(), "/" + std::string(1022, 'x'));
    setenv("TAVODIR5", ("/" + std::string(1020, 'x') + "//y").c_str(), 1);
    EXPECT_EQ(directoryFromEnvironment(), "/" + std::string(1020, 'x'));
}

TEST(LoaderPathTest, MissingSymbolsResolveToNull) {
    void* program = dlopen(nullptr, RTLD_NOW);
    EXPECT_NE(tavo::platform::Shlib_LoadSymbol<size_t (*)(const char*)>(program, "strlen"), nullptr);
    EXPECT_EQ(tavo::platform::Shlib_LoadSymbol<void (*)()>(program, "stub_missing_symbol"), nullptr);
    EXPECT_EQ(tavo::platform::Shlib_LoadSymbol<void (*)()>(nullptr, "strlen"), nullptr);
    dlclose(program);
}

TEST(LoaderPathTest, GuardClearsItsVariableAndUnlocks) {
    std::mutex mutex;
    uint32_t variable = 7;
    {
        const tavo::templates::platform::SpinLockVariableGuard guard(mutex, &variable);
        EXPECT_EQ(variable, 7U);
    }
    EXPECT_EQ(variable, 0U);
    EXPECT_TRUE(mutex.try_lock());
    mutex.unlock();
    { const tavo::templates::platform::SpinLockVariableGuard guard(mutex); }
    EXPECT_TRUE(mutex.try_lock());
    mutex.unlock();
}

}  // namespace
