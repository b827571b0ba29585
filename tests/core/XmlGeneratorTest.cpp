#include <set>
#include <sstream>

#include "StandardApplets/grabber_basis/ParameterInfoGeneratorXML.h"
#include "StandardApplets/grabber_basis/XmlFilters.h"
#include "tests/core/GrabberTest.h"
#include "tests/core/ProbeModule.h"

namespace {

/// Records to describe, and the text that the generator writes of them. The groups that the applet has stand in
/// tests/data/quillon.xml.
class XmlGeneratorTest : public ModuleTest {
protected:
    XmlGeneratorTest() : mModule(new ProbeModule(&master(), "m", mCalls)) {
        master().getHeader()->addModule(mModule, 0);
    }

    /// The probe notes its end in mCalls, so the grabber goes first.
    void TearDown() override {
        Fg_FreeGrabber(handle());
        mHandle.Master = nullptr;
    }
    Fx3Parameter& make(int id, FX3ParamType type, const char* name, const char* description = "") {
        Fx3Parameter& record = mModule->make(id, type, name);
        record.setDescr(description);
        return record;
    }
    /// \return the group of a record with these values, on port 0 unless told otherwise
    template <class... Values>
    std::string group(const Fx3Parameter& record, const Values&... values) {
        std::ostringstream out;
        ParameterInfoGeneratorXML(out, mPort, mNames).infoGenerate(record, values...);
        return out.str();
    }
    std::string integerGroup(const Fx3Parameter& record, uint64_t inc = 16) {
        return group(record, uint64_t{1024}, uint64_t{32}, uint64_t{65536}, inc);
    }

    int mPort = 0;
    std::set<std::string> mNames;
    std::vector<std::string> mCalls;
    ProbeModule* mModule;
};

TEST(XmlStringFilterTest, FiveCharactersBecomeEntities) {
    EXPECT_EQ(xmlStringFilter(""), "");
    EXPECT_EQ(xmlStringFilter("Flash & ExSync: a<b, b>a, \"x\", 'y'"),
              "Flash &amp; ExSync: a&lt;b, b&gt;a, &quot;x&quot;, &apos;y&apos;");
    EXPECT_EQ(xmlStringFilter("&lt;"), "&amp;lt;") << "nothing is taken for an entity already";
    EXPECT_EQ(xmlStringFilter("\t\xC2\xB5s \x01\xFF"), "\t\xC2\xB5s \x01\xFF");
}

constexpr const char* kModeAccess = R"(<IntSwissKnife Name="FG_MODE_AccessSwissKnife">
<pVariable Name="ACCESSMODE">FG_MODE_RegAccess</pVariable>
<Formula>(ACCESSMODE &lt; 2) ? 1 : 0</Formula>
</IntSwissKnife>
<IntReg Name="FG_MODE_RegAccess">
<Address>2147488698</Address>
<Length>4</Length>
<AccessMode>RO</AccessMode>
<pPort>DevicePort</pPort>
<Cachable>NoCache</Cachable>
<PollingTime>500</PollingTime>
<Sign>Signed</Sign>
<Endianess>LittleEndian</Endianess>
</IntReg>
)";

TEST_F(XmlGeneratorTest, OnlyAParameterThatCannotBeReadIsWriteOnlyOnItsPort) {
    Fx3Parameter& width = make(100, TYPE_INT, "FG_WIDTH");
    const std::string readable = "<Length>4</Length>\n<AccessMode>RW</AccessMode>\n";
    const std::string writeOnly = "<Length>4</Length>\n<AccessMode>WO</AccessMode>\n";
    for (const int access : {0, 2, 6}) {
        width.access.accessFlag = {access, 1};
        mPort = 0;
        EXPECT_THAT(integerGroup(width), testing::HasSubstr(writeOnly)) << access;
        EXPECT_THAT(integerGroup(width), testing::Not(testing::HasSubstr(readable))) << access;
        mPort = 1;
        EXPECT_THAT(integerGroup(width), testing::HasSubstr(readable)) << access;
    }
}

TEST_F(XmlGeneratorTest, AddressesHoldIdentifierAndSelectorAtBothEnds) {
    struct Addresses {
        int id;
        const char *value, *minimum, *maximum, *access;
    };
    constexpr Addresses kExpected[] = {
        {0,          "<Address>0<",          "<Address>3221225472<", "<Address>1073741824<", "<Address>2147483648<"},
        {1073741823, "<Address>1073741823<", "<Address>4294967295<", "<Address>2147483647<", "<Address>3221225471<"},
    };
    for (const Addresses& expected : kExpected) {
        const std::string text = integerGroup(make(expected.id, TYPE_INT, "FG_EDGE"));
        for (const char* address : {expected.value, expected.minimum, expected.maximum, expected.access}) {
            EXPECT_THAT(text, testing::HasSubstr(address)) << expected.id;
        }
    }
    EXPECT_THAT(integerGroup(make(1, TYPE_INT, "FG_STEP"), 18446744073709551615u),
                testing::HasSubstr("\n<Inc>18446744073709551615</Inc>\n"));
}

constexpr const char* kModeSelector = R"(<Integer Name='FG_MODE_Selector'>
<Value>0</Value>
<Min>0</Min>
<Max>2</Max>
<Inc>1</Inc>
<pSelect>FG_MODE_Reg</pSelect>
</Integer>)";

TEST_F(XmlGeneratorTest, IntegerFieldGroupHasASelector) {
    Fx3Parameter& mode = make(5050, TYPE_OTHER, "FG_MODE");
    EXPECT_EQ(group(mode, std::vector<uint64_t>(3), uint64_t{1}, uint64_t{18446744073709551615u}, uint64_t{2}),
              std::string(kModeSelector) + R"(<IntReg Name="FG_MODE_Reg">
<Address>5050</Address>
<Length>4</Length>
<AccessMode>RW</AccessMode>
<pPort>DevicePort</pPort>
<Sign>Signed</Sign>
<Endianess>LittleEndian</Endianess>
</IntReg>
)" + kModeAccess + R"(<Integer Name='FG_MODE'>
<pIsLocked>FG_MODE_AccessSwissKnife</pIsLocked>
<pValue>FG_MODE_Reg</pValue>
<Min>1</Min>
<Max>18446744073709551615</Max>
<Inc>2</Inc>
</Integer>)");
    EXPECT_THAT(group(mode, std::vector<uint64_t>(1), uint64_t{0}, uint64_t{1}, uint64_t{1}),
                testing::HasSubstr("<Max>0</Max>\n<Inc>1</Inc>\n<pSelect>"));
}

}  // namespace
