#pragma once

#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/PSFx4/PSAreaTrigger.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/result_codes.h"
#include "tests/core/GrabberTest.h"

/// An area trigger over a fake board. A test may change the design before it opens the module.
class AreaTriggerFixture : public ModuleTest {
protected:
    /// Makes the module with its defaults applied: time base 10 us, 8 Hz, 4000 us.
    PSAreaTrigger& open() {
        for (int port : {0, 1}) master().setIsArea(1, port);
        mTrigger = &add<PSAreaTrigger>();
        board.clearEvents();
        return *mTrigger;
    }
    /// Opens in a trigger mode with ExSync switched on.
    void openInMode(int mode) {
        open();
        load(FG_EXSYNCON, 1);
        load(FG_TRIGGERMODE, mode);
        board.clearEvents();
    }
    /// \return events as one text, "ExSyncLow 399, ImgSwEnable 0": without "AATrgArea_" or "AATrg_", which all have
    static std::string textOf(std::vector<std::string> events) {
        std::string text;
        for (std::string& event : events) {
            for (const std::string prefix : {"AATrgArea_", "AATrg_"}) {
                if (const size_t at = event.find(prefix); at != std::string::npos) event.erase(at, prefix.size());
            }
            text += (text.empty() ? "" : ", ") + event;
        }
        return text;
    }
    /// \return the register writes since the events were cleared
    [[nodiscard]] std::string writes() const { return textOf(board.writes()); }
    /// \return the register writes of a value that comes unchecked, as from a file
    template <class Value>
    std::string writesOf(int id, Value value, unsigned port = 0) {
        board.clearEvents();
        mResult = load(id, value, port);
        return writes();
    }
    /// \return the register writes of an update
    std::string update(int id, unsigned port = 0) {
        board.clearEvents();
        mResult = mTrigger->updateParameter(port, id);
        return writes();
    }

    PSAreaTrigger* mTrigger = nullptr;
    int mResult = 0;  ///< of the last writesOf() or update()
};
