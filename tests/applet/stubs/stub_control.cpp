#include "tests/applet/stubs/Recorder.h"

extern "C" {

const char* stub_calls() { return recorder().calls(); }

void stub_clear() { recorder().clear(); }

void stub_answer(const char* operation, int64_t value) { recorder().answer(operation, value); }
}
