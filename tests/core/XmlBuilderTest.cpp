#include <locale>

#include "StandardApplets/grabber_basis/ParameterInfoBuilderXML.h"
#include "StandardApplets/grabber_basis/XmlFilters.h"
#include "tests/core/GrabberTest.h"
#include "tests/core/ProbeModule.h"

namespace {

std::string tailOf(const std::string& document) {
    const size_t start = document.find("<Category");
    return start == std::string::npos ? "no category" : document.substr(start);
}

constexpr const char* kEnd = "<Port Name=\"DevicePort\"></Port>\n</RegisterDescription>\n";
constexpr const char* kRoot =
    "<Category Name='Root' NameSpace='Standard'>\n<pFeature>AppletParameters</pFeature>\n</Category>\n";

/// A grabber whose parameters a test makes itself.
class XmlBuilderTest : public ModuleTest {
protected:
    /// The probe notes its end in mCalls, so the grabber goes first.
    void TearDown() override {
        Fg_FreeGrabber(handle());
        mHandle.Master = nullptr;
    }
    ProbeModule& probe() {
        if (mProbe == nullptr) {
            mProbe = new ProbeModule(&master(), "m", mCalls);
            master().getHeader()->addModule(mProbe, 0);
        }
        return *mProbe;
    }
    /// Makes a parameter that is visible in a group of port 0.
    Fx3Parameter& visible(int id, FX3ParamType type, const char* name, const char* group,
                          RegisterInfo* parent = nullptr) {
        Fx3Parameter& record = probe().make(id, type, name);
        record.access.visibilityFlag[0] = 1;
        record.description.group[0] = master().getHeader()->addGroupInfo(0, parent, group);
        return record;
    }
    std::string tail(int port = 0) { return tailOf(xml(port)); }

    std::vector<std::string> mCalls;
    ProbeModule* mProbe = nullptr;
};

TEST(XmlNameFilterTest, LettersStayAndOthersDependOnTheirPosition) {
    const std::pair<const char*, const char*> names[] = {
        {"",                   ""               },
        {"Trigger / Exsync",   "TriggerExsync"  },
        {"Digital I/O",        "DigitalIO"      },
        {"Reg. Direct Access", "RegDirectAccess"},
        {"FG_KNEE_LUT0",       "FG_KNEE_LUT0"   },
        {"8Tap",               "Tap"            },
        {"_8Tap",              "8Tap"           },
        {" 8Tap",              "8Tap"           },
        {"\xC3\x84 @[`{/:-.",  ""               },
    };
    for (const auto& [text, name] : names) EXPECT_EQ(xmlNameFilter(text), name) << text;
}

TEST(XmlStringFilterTest, FiveCharactersBecomeEntities) {
    EXPECT_EQ(xmlStringFilter(""), "");
    EXPECT_EQ(xmlStringFilter("Flash & ExSync: a<b, b>a, \"x\", 'y'"),
              "Flash &amp; ExSync: a&lt;b, b&gt;a, &quot;x&quot;, &apos;y&apos;");
    EXPECT_EQ(xmlStringFilter("&lt;"), "&amp;lt;") << "nothing is taken for an entity already";
    EXPECT_EQ(xmlStringFilter("\t\xC2\xB5s \x01\xFF"), "\t\xC2\xB5s \x01\xFF");
}

TEST_F(XmlBuilderTest, LeavesOutWhatCannotBeDescribed) {
    visible(1, TYPE_INT, "FG_INTEGER", "Group");
    visible(2, TYPE_DOUBLE, "FG_DOUBLE", "Group");
    visible(3, TYPE_ENUM, "FG_ENUM", "Group");
    visible(4, TYPE_STRING, "FG_TEXT", "Group");
    visible(5, TYPE_OTHER, "FG_OTHER", "Group");
    visible(6, TYPE_DIRECT, "FG_DIRECT", "Group");
    visible(7, static_cast<FX3ParamType>(-1), "FG_NEGATIVE", "Group");
    visible(8, static_cast<FX3ParamType>(6), "FG_UNKNOWN", "Group");
    visible(9, TYPE_INT, "DRA_Register", "Group");
    visible(10, TYPE_INT, "D R A_Register", "Group");
    visible(11, TYPE_INT, "FG_WITH BLANK", "Group");
    visible(12, TYPE_INT, "FG_INVISIBLE", "Group").access.visibilityFlag[0] = 0;
    visible(13, TYPE_INT, "FG_HOMELESS", "Group").description.group[0] = nullptr;
    visible(14, TYPE_INT, "DRAFT", "Group");
    EXPECT_EQ(tail(), std::string(kRoot) + R"(<Category Name='AppletParameters'>
<pFeature>Group</pFeature>
</Category>
<Category Name='Group'>
<pFeature>FG_INTEGER</pFeature>
<pFeature>FG_DOUBLE</pFeature>
<pFeature>FG_ENUM</pFeature>
<pFeature>DRAFT</pFeature>
</Category>
)" + kEnd);
    for (const char* name :
         {"DRA_", "TEXT", "OTHER", "DIRECT", "BLANK", "VISIBLE", "HOMELESS", "NEGATIVE", "UNKNOWN"}) {
        EXPECT_THAT(xml(), Not(HasSubstr(name)));
    }
    EXPECT_THAT(tail(1), Not(HasSubstr("Group"))) << "port 1 has flags and groups of its own";
}

TEST_F(XmlBuilderTest, CategoriesAreMergedByTheirFilteredNamesAndFlat) {
    Fx3Parameter& first = visible(1, TYPE_INT, "FG_A", "Digital I/O");
    visible(2, TYPE_INT, "FG_B", "Below", first.description.group[0]);
    visible(3, TYPE_INT, "FG_C", "DigitalIO");
    visible(4, TYPE_INT, "FG_D", "");
    visible(5, TYPE_INT, "FG_E", "Root");
    visible(6, TYPE_INT, "FG_F", "- . -");
    EXPECT_EQ(tail(), std::string(kRoot) + R"(<Category Name='AppletParameters'>
<pFeature>DigitalIO</pFeature>
<pFeature>Below</pFeature>
<pFeature>Root</pFeature>
<pFeature></pFeature>
<pFeature>FG_D</pFeature>
</Category>
<Category Name='DigitalIO'>
<pFeature>FG_A</pFeature>
<pFeature>FG_C</pFeature>
</Category>
<Category Name='Below'>
<pFeature>FG_B</pFeature>
</Category>
<Category Name='AppletParameters'>
<pFeature>FG_E</pFeature>
</Category>
<Category Name=''>
<pFeature>FG_F</pFeature>
</Category>
)" + kEnd);
}

TEST_F(XmlBuilderTest, EntriesWithoutSymbolicNameAreLeftOutAndTheLastOfAValueStays) {
    visible(1, TYPE_ENUM, "FG_ENUM", "Group");
    const EnumField entries[] = {
        {"Two",       2,   "TWO"  },
        {"None",      7,   nullptr},
        {"Other two", 2,   "OTHER"},
        {"One",       1,   "O<E"  },
        {"All bits",  ~0u, "ALL"  }
    };
    master().getHeader()->setLimits(1, 0, entries, 5, 2, false);
    EXPECT_THAT(xml(), HasSubstr(R"(_AccessSwissKnife</pIsLocked>
<EnumEntry Name="ALL">
<Value>-1</Value>
</EnumEntry>
<EnumEntry Name="O&lt;E">
<Value>1</Value>
</EnumEntry>
<EnumEntry Name="OTHER">
<Value>2</Value>
</EnumEntry>
<pValue>FG_ENUM_Reg</pValue>
)"));
    master().getHeader()->setLimits(1, 0, entries + 1, 1, 7, false);
    EXPECT_THAT(xml(), HasSubstr("_AccessSwissKnife</pIsLocked>\n<pValue>FG_ENUM_Reg</pValue>\n"));
}

class GroupedDigits : public std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(XmlBuilderTest, NumbersIgnoreTheLocaleOfTheProcess) {
    mFabrixBoard->setAppletVersion(123456);
    visible(5050, TYPE_INT, "FG_INTEGER", "Group");
    const std::string expected = xml();
    const std::locale former = std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
    const std::string grouped = xml();
    std::locale::global(former);
    EXPECT_EQ(grouped, expected);
    EXPECT_THAT(expected, HasSubstr("\"123456\""));
}

// ---- Size and copy

class XmlBufferTest : public XmlBuilderTest {
protected:
    int ask(int port, char* buffer, size_t& size) { return Fg_getParameterInfoXML(handle(), port, buffer, &size); }
};

TEST_F(XmlBufferTest, TakesExactlyTheSizeItAskedForAndNotAByteLess) {
    const std::string text = xml();
    size_t size = 0;
    EXPECT_EQ(ask(0, nullptr, size), 0);
    EXPECT_EQ(size, text.size() + 1);
    std::vector<char> buffer(text.size() + 100, '?');
    EXPECT_EQ(ask(0, buffer.data(), size), 0);
    EXPECT_EQ(size, text.size() + 1);
    EXPECT_STREQ(buffer.data(), text.c_str());
    EXPECT_EQ(buffer[text.size() + 1], '?') << "wrote behind the size it was told";
    for (const size_t small : {text.size(), size_t{1}, size_t{0}}) {
        std::fill(buffer.begin(), buffer.end(), '?');
        size = small;
        EXPECT_EQ(ask(0, buffer.data(), size), -500) << small;
        EXPECT_EQ(size, small);
        EXPECT_THAT(buffer, Each('?')) << small;
    }
}

}  // namespace
