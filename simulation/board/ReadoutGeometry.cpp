#include "simulation/board/ReadoutGeometry.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "simulation/support/Numbers.h"

namespace simulation {

namespace {

constexpr std::array kGeometries{
    ReadoutGeometry{0,  "SMODE_UNCHANGED", "|->                       |"},
    ReadoutGeometry{3,  "SMODE_REVERSE",   "|                       <-|"},
    ReadoutGeometry{30, "SMODE_TAB8_0",    "|1234>               <8765|"},
    ReadoutGeometry{31, "SMODE_TAB8_1",    "|1234>               <5678|"},
    ReadoutGeometry{32, "SMODE_TAB8_2",    "|1234>       5678>        |"},
    ReadoutGeometry{33, "SMODE_TAB8_3",    "|12>    34>    56>    78> |"},
    ReadoutGeometry{34, "SMODE_TAB8_4",    "| <87    <65    <43    <21|"},
    ReadoutGeometry{35, "SMODE_TAB8_5",    "|12>    34>     <56    <78|"},
    ReadoutGeometry{36, "SMODE_TAB8_6",    "|5678>               <4321|"},
    ReadoutGeometry{37, "SMODE_TAB8_7",    "|8765>               <4321|"},
    ReadoutGeometry{38, "SMODE_TAB8_8",    "|        <8765       <4321|"},
    ReadoutGeometry{39, "SMODE_TAB8_9",    "|87>    65>     <43    <21|"},
    ReadoutGeometry{40, "SMODE_TAB8_10",   "|12>    34>     <65    <87|"},
    ReadoutGeometry{41, "SMODE_TAB8_11",   "|78>    56>     <43    <21|"},
    ReadoutGeometry{42, "SMODE_TAB8_12",   "|1> 2> 3> 4> 5> 6> 7> 8>  |"},
    ReadoutGeometry{43, "SMODE_TAB8_13",   "|  <8 <7 <6 <5 <4 <3 <2 <1|"},
    ReadoutGeometry{44, "SMODE_TAB8_14",   "|1> 2> 3> 4>   <5 <6 <7 <8|"},
    ReadoutGeometry{45, "SMODE_TAB8_15",   "|8> 7> 6> 5>   <4 <3 <2 <1|"},
    ReadoutGeometry{46, "SMODE_TAB8_16",   "|1> 2>  <3 <4 5> 6>  <7 <8|"},
    ReadoutGeometry{47, "SMODE_TAB8_17",   "|8> 7>  <6 <5 4> 3>  <2 <1|"},
    ReadoutGeometry{48, "SMODE_TAB8_18",   "|  <1 <2 <3 <4 <5 <6 <7 <8|"},
    ReadoutGeometry{49, "SMODE_TAB8_19",   "|8> 7> 6> 5> 4> 3> 2> 1>  |"},
    ReadoutGeometry{50, "SMODE_TAB8_20",   "| <1 <2 <3 <4 5> 6> 7> 8> |"},
    ReadoutGeometry{51, "SMODE_TAB8_21",   "| <8 <7 <6 <5 4> 3> 2> 1> |"},
};

/// A segment of the sensor line.
struct Segment {
    bool runsRight = true;
    std::vector<uint32_t> taps;  // from 0, from left to right
};

std::vector<Segment> segmentsOf(std::string_view diagram) {
    std::vector<Segment> segments;
    bool isOpen = false;
    const auto open = [&](bool runsRight) {
        segments.push_back({runsRight, {}});
        isOpen = true;
    };
    for (const char mark : diagram) {
        const bool isTap = mark == '-' || (mark >= '1' && mark <= '8');
        if (mark == '<') {
            open(false);
        } else if (isTap) {
            if (!isOpen) open(true);
            segments.back().taps.push_back(mark == '-' ? 0 : static_cast<uint32_t>(mark - '1'));
        } else {
            isOpen = false;
        }
    }
    return segments;
}

}  // namespace

const ReadoutGeometry& unchangedGeometry() { return kGeometries.front(); }

const ReadoutGeometry* findGeometry(int number) {
    const auto found = std::find_if(kGeometries.begin(), kGeometries.end(),
                                    [&](const ReadoutGeometry& geometry) { return geometry.number == number; });
    return found == kGeometries.end() ? nullptr : found;
}

const ReadoutGeometry* findGeometry(std::string_view text) {
    if (const auto number = parseNumber<int>(text)) return findGeometry(*number);
    const auto found = std::find_if(kGeometries.begin(), kGeometries.end(),
                                    [&](const ReadoutGeometry& geometry) { return geometry.name == text; });
    return found == kGeometries.end() ? nullptr : found;
}

LineOrder deliveryOrder(const ReadoutGeometry& geometry, uint32_t width) {
    if (width % kReadoutStep != 0) return {};
    const std::vector<Segment> segments = segmentsOf(geometry.diagram);
    const auto segmentWidth = static_cast<uint32_t>(width / segments.size());
    const auto step = static_cast<uint32_t>(segments.front().taps.size());
    const auto taps = static_cast<uint32_t>(step * segments.size());
    std::vector<uint32_t> columns(width);
    uint32_t start = 0;
    for (const Segment& segment : segments) {
        for (uint32_t clock = 0; clock < width / taps; ++clock) {
            const uint32_t way = segment.runsRight ? clock * step : segmentWidth - (clock + 1) * step;
            for (uint32_t i = 0; i < step; ++i) columns[clock * taps + segment.taps[i]] = start + way + i;
        }
        start += segmentWidth;
    }
    return LineOrder(std::move(columns));
}

}  // namespace simulation
