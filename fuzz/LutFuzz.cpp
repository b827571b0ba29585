// LUT files of any content, through each reader; the first byte chooses it.
#include <array>
#include <memory>

#include "StandardApplets/grabber_basis/Fg_LutFileParser.h"
#include "fabrix/result_codes.h"
#include "fuzz/Scratch.h"

namespace {

constexpr uint32_t kPoints = 1025;

KneeLookupTable_s emptyTable(uint32_t id) {
    return {.value = nullptr, .reserved = nullptr, .id = id, .nrOfElements = kPoints, .format = 3, .number = 0};
}

void readPlain(const char* path) {
    LookupTable_s table{};
    const int result = Fg_LutFileParser().getLutFromFile(path, &table, "");
    expect(result == FG_OK || table.nrOfElements == 0, "a refused table has no entries");
    uint64_t sum = 0;
    for (uint32_t i = 0; i < table.nrOfElements; ++i) sum += table.lut[i];
    expect(sum <= uint64_t{table.nrOfElements} * UINT32_MAX, "entries are 32 bits wide");
    delete[] table.lut;
}

void readKnee(const char* path) {
    KneeLookupTable_s gray = emptyTable(0);
    expect(Fg_LutFileParser().getLutFromFile(path, &gray, "[gray]") == FG_OK, "content is never an error");
    delete[] gray.value;
}

void readThree(const char* path) {
    std::array tables{emptyTable(0), emptyTable(1), emptyTable(2)};
    expect(Fg_LutFileParser().getLutFromFile(path, &tables[0], &tables[1], &tables[2]) == FG_OK,
           "content is never an error");
    for (const KneeLookupTable_s& table : tables) delete[] table.value;
}

void readMatrix(const char* path) {
    std::array<int, 64> values{};
    Fg_LutFileParser().getMatrixFromFile(path, values.data(), static_cast<int>(values.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    constexpr std::array kReaders{&readPlain, &readKnee, &readThree, &readMatrix};
    Scratch::write("fuzzed.lut", data + 1, size - 1);
    kReaders[data[0] % kReaders.size()]("fuzzed.lut");
    return 0;
}
