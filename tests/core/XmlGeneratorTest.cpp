#include <set>
#include <sstream>

#include "StandardApplets/grabber_basis/ParameterInfoGeneratorXML.h"
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

    int mPort = 0;
    std::set<std::string> mNames;
    std::vector<std::string> mCalls;
    ProbeModule* mModule;
};

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

TEST_F(XmlGeneratorTest, TextGroupIsOneRegister) {
    Fx3Parameter& mode = make(5050, TYPE_STRING, "FG_MODE", "Name.");
    EXPECT_EQ(group(mode, std::string("a.lut"), std::string("*.lut")),
              std::string(kModeAccess) + R"(<StringReg Name="FG_MODE">
<Description>Name.</Description>
<pIsLocked>FG_MODE_AccessSwissKnife</pIsLocked>
<Address>5050</Address>
<Length>4096</Length>
<AccessMode>RW</AccessMode>
<pPort>DevicePort</pPort>
</StringReg>)");
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
                HasSubstr("<Max>0</Max>\n<Inc>1</Inc>\n<pSelect>"));
}

TEST_F(XmlGeneratorTest, FloatFieldGroupHasLimitsOfSixteenDigits) {
    Fx3Parameter& mode = make(5050, TYPE_OTHER, "FG_MODE", "Points.");
    EXPECT_EQ(group(mode, std::vector<double>(3), 0.1, 12345678.125, 0.5),
              std::string(kModeSelector) + R"(<FloatReg Name="FG_MODE_Reg">
<Address>5050</Address>
<Length>8</Length>
<AccessMode>RW</AccessMode>
<pPort>DevicePort</pPort>
<Endianess>LittleEndian</Endianess>
</FloatReg>
)" + kModeAccess + R"(<Float Name="FG_MODE">
<Description>Points.</Description>
<pIsLocked>FG_MODE_AccessSwissKnife</pIsLocked>
<pValue>FG_MODE_Reg</pValue>
<Min>0.1</Min>
<Max>12345678.125</Max>
</Float>)");
    const std::string extremes = group(mode, std::vector<double>(1), 1.0 / 3, 1e300, 0.0);
    EXPECT_THAT(extremes, HasSubstr("<Min>0.3333333333333333</Min>\n<Max>1e+300</Max>\n"));
}

}  // namespace
