#include "StandardApplets/grabber_basis/PSFx4/PSControl.h"
#include "tests/core/GrabberTest.h"

namespace {

/// The control module alone, published on both ports.
class ControlTest : public ModuleTest {
protected:
    ControlTest() { publish(true); }
    void publish(bool updateDefault) {
        for (unsigned port : {0u, 1u}) control().addStandardPS(port, updateDefault);
        board.clearEvents();
    }
    RSControl& control() { return *master().getController(); }
};

TEST_F(ControlTest, IdentityAndClocksReadAsTheyAre) {
    mFabrixBoard->setAppletID(172032096);
    mFabrixBoard->setAppletVersion(1);
    mFabrixBoard->setAppletRevision(2);
    master().setLineAlignment(32);
    EXPECT_EQ(get(FG_APPLET_ID), 172032096);
    EXPECT_EQ(get(FG_APPLET_VERSION), 1);
    EXPECT_EQ(get(FG_APPLET_REVISION), 2);
    EXPECT_EQ(get(FG_LINEALIGNMENT), 32);
    EXPECT_EQ(get(FG_TWOCAMMODEL), 0);
    EXPECT_EQ(get<double>(FG_REVNR), 3.008);
    EXPECT_EQ(get<double>(FG_FPGA_CLK), 250.0);
    EXPECT_EQ(get(FG_DMASTATUS), 0);
    master().getImageControl()->setImageDMATransferActive(0, true);
    EXPECT_EQ(get(FG_DMASTATUS, 0), 1);
    EXPECT_EQ(get(FG_DMASTATUS, 1), 0);
}

TEST_F(ControlTest, ActivePortIsStoredAndSelected) {
    EXPECT_EQ(set(FG_PORT, 0), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AACamSelect 0", "AACamSelect 0"));
    board.clearEvents();
    EXPECT_EQ(set(FG_PORT, 1), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AACamSelect 1"));
    EXPECT_EQ(get(FG_PORT, 0), 1);
    EXPECT_EQ(get(FG_PORT, 1), 1);
    EXPECT_EQ(set(FG_PORT, 2), -6000);
    EXPECT_EQ(set(FG_PORT, -1), -6000);
    board.failWrite("AACamSelect", -44);
    EXPECT_EQ(set(FG_PORT, 0), -44);
    EXPECT_EQ(get(FG_PORT), 0);
}

TEST_F(ControlTest, GlobalAccessOverridesAllButItself) {
    EXPECT_EQ(set(FG_GLOBAL_ACCESS, 2), -6000);
    EXPECT_EQ(set(FG_GLOBAL_ACCESS, 1), 0);
    for (const int port : {0, 1}) {
        EXPECT_EQ(access(FG_TIMEOUT, port), 1);
        EXPECT_EQ(access(FG_GLOBAL_ACCESS, port), 7);
    }
    EXPECT_EQ(set(FG_TIMEOUT, 5), -8010);
    EXPECT_EQ(set(FG_GLOBAL_ACCESS, 7), 0);
    EXPECT_EQ(access(FG_APPLET_ID), 7);
    EXPECT_EQ(set(FG_APPLET_ID, 0), -2070);
    EXPECT_EQ(set(FG_GLOBAL_ACCESS, 0), 0);
    EXPECT_EQ(access(FG_TIMEOUT), 7);
    EXPECT_EQ(access(FG_APPLET_ID), 1);
    EXPECT_EQ(set(FG_APPLET_ID, 0), -8010);
}

TEST_F(ControlTest, CameraStatusCombinesTheConnectors) {
    struct Case {
        bool medium, full;
        int e0, e1, e2;
        unsigned buffer;
        int status, extended;
    };
    const Case cases[] = {
        {true,  true,  7,     7,      0,   0,   1, 7              },
        {true,  true,  7,     6,      7,   0,   0, 6              },
        {true,  false, 7 + 8, 7 + 16, 0,   32,  1, 7 + 8 + 16 + 32},
        {true,  true,  64,    128,    0,   0,   0, 128            }, // the larger of the two, not both
        {true,  true,  192,   64,     0,   0,   0, 192            },
        {true,  true,  0,     7,      0,   7,   0, 7              }, // the buffer status counts for connector 0, too
        {false, true,  7,     7,      5,   0,   1, 5              },
        {false, true,  7,     7,      0,   0,   0, 0              },
        {false, true,  8,     64,     255, 0,   0, 72             },
        {false, false, 255,   0,      0,   256, 1, 511            },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        master().setIsMedium(c.medium);
        master().setIsFull(c.full);
        board.cameraStatus = {
            {0u, c.e0},
            {1u, c.e1},
            {2u, c.e2}
        };
        board.setValue("AABufferStatus", c.buffer);
        EXPECT_EQ(get(FG_CAMSTATUS), c.status);
        EXPECT_EQ(get(FG_CAMSTATUS_EXTENDED), c.extended);
        EXPECT_EQ(get(FG_CAMSTATUS, 1), 0);
        EXPECT_EQ(get(FG_CAMSTATUS_EXTENDED, 1), 0);
    }
}

TEST_F(ControlTest, ClockIsMeasuredOnceByTheDocumentedSteps) {
    EXPECT_THAT(board.eventsOf("write AAFreqCount"), IsEmpty());
    board.setValue("AAFreqCount", 0xF0000000FU);
    board.setValue("AAFreqCount", 0x100000000U + 15625000U);
    const double measured = get<double>(FG_PLX_CLK);
    EXPECT_THAT(board.events, ElementsAre("write AAFreqCountCtrl 1", "write AAFreqCountCtrl 2",
                                          "write AAFreqCountCtrl 0", "read AAFreqCount"));
    // 15625000 counts in 100000 us and a little more, times 1.6 / 1000000.
    EXPECT_LE(measured, 0.00025);
    EXPECT_GT(measured, 0.0001);
    board.clearEvents();
    EXPECT_EQ(get<double>(FG_MEASURED_PCIE_CLK), measured);
    EXPECT_EQ(get<double>(FG_PLX_CLK, 1), measured);
    EXPECT_THAT(board.events, IsEmpty());
}

TEST_F(ControlTest, ResetPulseAndGlobalWorkReadTheStatusAfterEachWrite) {
    EXPECT_EQ(control().writeReset(0), 0);
    EXPECT_THAT(board.events, ElementsAre("write AAReset 1", "status 0", "write AAReset 1", "status 0",
                                          "write AAReset 1", "status 0", "write AAReset 1", "status 0",
                                          "write AAReset 1", "status 0", "write AAReset 0", "status 0"));
    board.clearEvents();
    EXPECT_EQ(control().writeEnableDisableGlobalwork(1, true), 0);
    EXPECT_EQ(control().enableSDRAM(1), 0);
    EXPECT_THAT(board.events, ElementsAre("write AAglobal_work 1", "status 0", "write AASdramEnable 1"));
    board.clearEvents();
    board.failWrite("AAReset", -10);
    EXPECT_EQ(control().writeReset(1), -60);
    EXPECT_EQ(board.events.size(), 12U);
}

}  // namespace
