#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "fabrix/applet.h"
#include "fabrix/haprt.h"
#include "fabrix/tavo_hw.h"
#include "tests/core/DesignRegisters.h"

/// A board and a design that record what the applet does with them. Stores its functions in the loaders' tables
/// while it lives, so nothing is loaded; one lives at a time.
///
/// Events are lines such as "write AAReset 1", "status 0", "configure", "start path=0 mode=16 count=5 timeout=20",
/// "stop path=0", "unload". The registers start as the real design's; a test may change the list before it opens a
/// grabber.
class FakeBoard {
public:
    struct Register {
        std::string name;
        int width;
        int direction;
        uint64_t value = 0;
    };

    FakeBoard();
    FakeBoard(const FakeBoard&) = delete;
    FakeBoard& operator=(const FakeBoard&) = delete;
    ~FakeBoard();

    /// Device handle for Std_entry; any other non-null one serves as well.
    static FgDevice* device();
    /// Handle of a design that has not been unloaded; null never.
    static fpga_design* design();
    /// Buffers handle that means nothing to this board.
    static dma_mem* memory();

    void removeRegister(const std::string& name);
    void setWidth(const std::string& name, int width);
    /// Let every access to a register fail with a code; 0 lets it pass again.
    void failWrite(const std::string& name, int code) { failures["write " + name] = code; }
    void failRead(const std::string& name, int code) { failures["read " + name] = code; }
    /// Lets the n-th write (from 1, counted from now) to any register fail.
    void failNthWrite(int n, int code);
    /// \return the value that the register holds; -1 in all bits when there is none
    uint64_t value(const std::string& name) const;
    void setValue(const std::string& name, uint64_t value);

    void clearEvents() { events.clear(); }
    /// \return the events since the last clearEvents() that begin with \p prefix, without it
    std::vector<std::string> eventsOf(const std::string& prefix) const;
    /// \return the register writes since the last clearEvents(), as "NAME VALUE"
    std::vector<std::string> writes() const { return eventsOf("write "); }

    std::vector<Register> registers;  ///< handle k is registers[k - 1]
    std::vector<std::string> events;
    std::map<std::string, int> failures;   ///< by "write NAME" and "read NAME"
    std::map<unsigned, int> cameraStatus;  ///< by connector; 0 where missing
    int startResult = 0;
    int stopResult = 0;
    int testResult = 0;
    int waitResult = 1;

    static FakeBoard* current;
    Register* find(int handle);
    int failingWriteCountdown = 0;
    int failingWriteCode = 0;
};
