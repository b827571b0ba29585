#include "StandardApplets/grabber_basis/Shading/ShadingMaster.h"

#include <algorithm>

#include "fabrix/result_codes.h"

namespace {

constexpr float kNoOffset = 0.0F;
constexpr float kNoGain = 1.0F;
constexpr float kNoValue = -1.0F;

// Four pointers, one of them to the virtual functions, and nine numbers.
static_assert(sizeof(ShadingMaster) == (sizeof(void*) == 8 ? 72 : 52), "a host's object has this layout");

}  // namespace

ShadingMaster::ShadingMaster(int Set, unsigned int Port, unsigned int MaxWidth, unsigned int MaxHeight)
    : mDataSub(std::make_unique<float[]>(MaxWidth)),
      mDataMult(std::make_unique<float[]>(MaxWidth)),
      mDataFPN(std::make_unique<bool[]>(MaxWidth)),
      mSet(Set),
      mPort(Port),
      mMaxWidth(MaxWidth),
      mMaxHeight(MaxHeight) {
    ShadingMaster::init();
}

ShadingMaster::~ShadingMaster() = default;

void ShadingMaster::init() {
    std::fill_n(mDataSub.get(), mMaxWidth, kNoOffset);
    std::fill_n(mDataMult.get(), mMaxWidth, kNoGain);
    std::fill_n(mDataFPN.get(), mMaxWidth, false);
    mWidth = 0;
}

template <class Value>
int ShadingMaster::store(std::unique_ptr<Value[]>& values, unsigned int index, Value value) {
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
