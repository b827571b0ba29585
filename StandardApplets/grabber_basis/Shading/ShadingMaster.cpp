#include "StandardApplets/grabber_basis/Shading/ShadingMaster.h"

#include <algorithm>

#include "fabrix/result_codes.h"

namespace {

constexpr float kNoOffset = 0.0F;
constexpr float kNoGain = 1.0F;
constexpr float kNoValue = -1.0F;

}  // namespace

ShadingMaster::ShadingMaster(int Set, unsigned int Port, unsigned int MaxWidth, unsigned int MaxHeight)
    : mDataSub(MaxWidth, kNoOffset),
      mDataMult(MaxWidth, kNoGain),
      mDataFPN(MaxWidth, false),
      mSet(Set),
      mPort(Port),
      mMaxWidth(MaxWidth),
      mMaxHeight(MaxHeight) {}

ShadingMaster::~ShadingMaster() = default;

void ShadingMaster::init() {
    std::fill(mDataSub.begin(), mDataSub.end(), kNoOffset);
    std::fill(mDataMult.begin(), mDataMult.end(), kNoGain);
    std::fill(mDataFPN.begin(), mDataFPN.end(), false);
    mWidth = 0;
}

template <class Values, class Value>
int ShadingMaster::store(Values& values, unsigned int index, Value value) {
    if (index >= mMaxWidth) return FG_INVALID_ARGUMENT;
    values[index] = value;
    mWidth = std::max(mWidth, index + 1);
    return FG_OK;
}

int ShadingMaster::setValueSub(unsigned int index, unsigned int /*channel*/, float value) {
    return store(mDataSub, index, value);
}

int ShadingMaster::setValueMult(unsigned int index, unsigned int /*channel*/, float value) {
    return store(mDataMult, index, value);
}

int ShadingMaster::setValueFPN(const unsigned int index, const unsigned int /*channel*/, const bool value) {
    return store(mDataFPN, index, value);
}

float ShadingMaster::getValueSub(unsigned int index, unsigned int /*channel*/) const {
    return index < mMaxWidth ? mDataSub[index] : kNoValue;
}

float ShadingMaster::getValueMult(unsigned int index, unsigned int /*channel*/) const {
    return index < mMaxWidth ? mDataMult[index] : kNoValue;
}

bool ShadingMaster::getValueFPN(unsigned int index, unsigned int /*channel*/) const {
    return index < mMaxWidth && mDataFPN[index];
}

int ShadingMaster::getAccess() { return FG_OK; }

int ShadingMaster::freeAccess() { return FG_OK; }

int ShadingMaster::writeActLine(int /*Line*/) { return FG_OK; }

int ShadingMaster::setId(const unsigned int id) {
    mId = id;
    return FG_OK;
}

int ShadingMaster::setCnt(const unsigned int cnt) {
    mCnt = static_cast<int>(cnt);
    return FG_OK;
}
