// LUT files of any content, through each reader; the first byte chooses it, and whether what was read is written and
// read again.
#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <iterator>
#include <string>

#include "StandardApplets/grabber_basis/Fg_LutFileParser.h"
#include "fabrix/result_codes.h"
#include "fuzz/Scratch.h"

namespace {

constexpr uint8_t kWrittenAgain = 240;  // from this first byte on
constexpr uint32_t kKneePoints = 1025;
/// The longest table that is written again, for each of its lines is flushed.
constexpr uint32_t kMostWritten = 32;

/// A table of 32-bit entries.
struct Plain {
    explicit Plain(bool written) : isWritten(written) {}
    Plain(const Plain&) = delete;
    Plain& operator=(const Plain&) = delete;
    ~Plain() { delete[] table.lut; }

    int read(const char* path) {
        const int result = Fg_LutFileParser().getLutFromFile(path, &table, "");
        expect(result == FG_OK || table.nrOfElements == 0, "a refused table has no entries");
        uint64_t sum = 0;
        for (uint32_t i = 0; i < table.nrOfElements; ++i) sum += table.lut[i];
        expect(sum <= uint64_t{table.nrOfElements} * UINT32_MAX, "entries are 32 bits wide");
        // A longer one counts as refused.
        return isWritten && table.nrOfElements > kMostWritten ? FG_ERROR : result;
    }
    [[nodiscard]] int save(const char* path) const { return Fg_LutFileParser().saveLutToFile(path, &table); }

    LookupTable_s table{};
    bool isWritten;
};

/// Knee curves: one, or three in a file of their own.
struct Knee {
    explicit Knee(bool isWritten) {
        for (KneeLookupTable_s& table : tables) table.nrOfElements = isWritten ? kMostWritten : kKneePoints;
    }
    Knee(const Knee&) = delete;
    Knee& operator=(const Knee&) = delete;
    ~Knee() {
        for (const KneeLookupTable_s& table : tables) delete[] table.value;
    }

    /// A line of the file does not hold numbers of hundreds of digits, which no curve has.
    [[nodiscard]] bool fitsIntoLines() const {
        return std::all_of(tables.begin(), tables.end(), [](const KneeLookupTable_s& table) {
            return table.value == nullptr || std::all_of(table.value, table.value + table.nrOfElements,
                                                         [](double value) { return std::fabs(value) < 1e100; });
        });
    }

    std::array<KneeLookupTable_s, 3> tables{};
};

struct OneKnee : Knee {
    using Knee::Knee;
    int read(const char* path) {
        const int result = Fg_LutFileParser().getLutFromFile(path, &tables[0], "[gray]");
        expect(result == FG_OK, "content is never an error");
        return fitsIntoLines() ? FG_OK : FG_ERROR;
    }
    [[nodiscard]] int save(const char* path) const {
        return Fg_LutFileParser().saveLutToFile(path, &tables[0], "[gray]");
    }
};

struct ThreeKnees : Knee {
    using Knee::Knee;
    int read(const char* path) {
        const int result = Fg_LutFileParser().getLutFromFile(path, &tables[0], &tables[1], &tables[2]);
        expect(result == FG_OK, "content is never an error");
        return fitsIntoLines() ? FG_OK : FG_ERROR;
    }
    [[nodiscard]] int save(const char* path) const {
        return Fg_LutFileParser().saveLutToFile(path, &tables[0], &tables[1], &tables[2]);
    }
};

struct Matrix {
    explicit Matrix(bool /*isWritten*/) {}
    int read(const char* path) { return Fg_LutFileParser().getMatrixFromFile(path, values.data(), kValues); }
    int save(const char* path) { return Fg_LutFileParser().saveMatrixToFile(path, "matrix\n", values.data(), kValues); }

    static constexpr int kValues = kMostWritten;
    std::array<int, kValues> values{};
};

std::string contentOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

template <class Content>
void readFile(bool isWrittenAgain) {
    Content content(isWrittenAgain);
    if (content.read("fuzzed.lut") != FG_OK || !isWrittenAgain) return;
    Content again(isWrittenAgain);
    expect(content.save("once.lut") == FG_OK, "what was read can be written");
    expect(again.read("once.lut") == FG_OK, "what was written can be read");
    expect(again.save("twice.lut") == FG_OK, "what was read again can be written");
    expect(contentOf("once.lut") == contentOf("twice.lut"), "what was written reads the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    constexpr std::array kReaders{&readFile<Plain>, &readFile<OneKnee>, &readFile<ThreeKnees>, &readFile<Matrix>};
    Scratch::write("fuzzed.lut", data + 1, size - 1);
    kReaders[data[0] % kReaders.size()](data[0] >= kWrittenAgain);
    return 0;
}
