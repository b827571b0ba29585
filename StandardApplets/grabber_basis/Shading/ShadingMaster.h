#pragma once

#include <memory>

/// Flat-field correction data of one line of one camera port: per pixel an offset to subtract, a gain to multiply by
/// and a fixed-pattern-noise flag. The host owns it, fills it line by line and gives it back. The data does not
/// touch the hardware; an applet with a shading block derives from it and overrides the three hooks.
/// Indexes are pixels from 0; channels are not used (one gray channel). Not thread-safe.
class ShadingMaster {
public:
    /// \param MaxWidth pixels of a line \param MaxHeight lines
    ShadingMaster(int Set, unsigned int Port, unsigned int MaxWidth, unsigned int MaxHeight);
    ShadingMaster(const ShadingMaster&) = delete;
    ShadingMaster& operator=(const ShadingMaster&) = delete;
    virtual ~ShadingMaster();

    /// Sets every offset to 0, every gain to 1 and every flag to false, and the used width to 0.
    virtual void init();
    /// \return 0, or FG_INVALID_ARGUMENT for an index at or beyond the maximum width, which changes nothing
    virtual int setValueSub(unsigned int index, unsigned int channel, float value);
    virtual int setValueMult(unsigned int index, unsigned int channel, float value);
    /// \return the value, or -1 for an index at or beyond the maximum width
    [[nodiscard]] virtual float getValueSub(unsigned int index, unsigned int channel) const;
    [[nodiscard]] virtual float getValueMult(unsigned int index, unsigned int channel) const;
    /// \return the flag, or false for an index at or beyond the maximum width
    [[nodiscard]] virtual bool getValueFPN(unsigned int index, unsigned int channel) const;
    /// Hooks of a derived class: take the shading hardware, give it back, write the line's data to line \p Line.
    /// \return 0
    virtual int getAccess();
    virtual int freeAccess();
    virtual int writeActLine(int Line);

    int setValueFPN(const unsigned int index, const unsigned int channel, const bool value);
    [[nodiscard]] unsigned int getMaxWidth() const { return mMaxWidth; }
    /// \return one more than the highest index written since construction or init()
    [[nodiscard]] unsigned int getWidth() const { return mWidth; }
    [[nodiscard]] unsigned int getPort() const { return mPort; }
    [[nodiscard]] int getSet() const { return mSet; }
    [[nodiscard]] unsigned int getId() const { return mId; }
    int setId(const unsigned int id);
    int setCnt(const unsigned int cnt);
    /// \return the values of the line, for a derived class that writes them to hardware
    float* dataSubArray() { return mDataSub.get(); }
    float* dataMultArray() { return mDataMult.get(); }

protected:
    template <class Value>
    int store(std::unique_ptr<Value[]>& values, unsigned int index, Value value);

    // Arrays of mMaxWidth values. A host's object has the same layout, so they are plain pointers.
    std::unique_ptr<float[]> mDataSub;
    std::unique_ptr<float[]> mDataMult;
    std::unique_ptr<bool[]> mDataFPN;
    int mSet;
    unsigned int mWidth = 0;
    unsigned int mPort;
    unsigned int mMaxWidth;
    unsigned int mMaxHeight;
    unsigned int mHeight = 0;
    unsigned int mLength = 0;
    unsigned int mId = 0;
    int mCnt = 0;
};
