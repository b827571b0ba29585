#include "PictureWriter.h"

#include <exception>
#include <utility>

namespace quillon::tool {

PictureWriter::PictureWriter(PictureFiles& files, uint32_t width, uint32_t height, size_t places)
    : mFiles(files), mWidth(width), mHeight(height), mPlaces(places, Pixels(size_t{width} * height)) {
    mThread = std::thread([this] { run(); });
}

PictureWriter::~PictureWriter() { end(); }

void PictureWriter::end() {
    {
        const std::lock_guard lock(mLock);
        mIsEnding = true;
        mGivenUp += mJobs.size();
        mJobs.clear();
    }
    mChanged.notify_all();
    if (mThread.joinable()) mThread.join();
}

std::optional<PictureWriter::Pixels> PictureWriter::takePlace(const std::stop_token& stop) {
    std::unique_lock lock(mLock);
    mHasWaited = mPlaces.empty();
    const bool isReady = mChanged.wait(lock, stop, [this] { return !mPlaces.empty() || !mProblem.empty(); });
    if (!isReady || !mProblem.empty()) return std::nullopt;
    Pixels place = std::move(mPlaces.back());
    mPlaces.pop_back();
    return place;
}

void PictureWriter::giveBack(Pixels place) {
    const std::lock_guard lock(mLock);
    mPlaces.push_back(std::move(place));
}

void PictureWriter::write(frameindex_t number, Pixels pixels) {
    {
        const std::lock_guard lock(mLock);
        mJobs.push_back({number, std::move(pixels)});
    }
    mChanged.notify_all();
}

void PictureWriter::finish(const std::stop_token& giveUp) {
    {
        std::unique_lock lock(mLock);
        mChanged.wait(lock, giveUp, [this] { return mJobs.empty() && !mIsWriting; });
    }
    end();
    try {
        mFiles.complete();
    } catch (const std::exception& error) {
        note(error.what());
    }
}

void PictureWriter::run() {
    std::unique_lock lock(mLock);
    while (true) {
        mChanged.wait(lock, [this] { return mIsEnding || !mJobs.empty(); });
        if (mJobs.empty()) return;
        Job job = std::move(mJobs.front());
        mJobs.pop_front();
        if (mProblem.empty()) {
            mIsWriting = true;
            lock.unlock();
            runGuarded(job);
            lock.lock();
            mIsWriting = false;
        } else {
            ++mGivenUp;
        }
        mPlaces.push_back(std::move(job.pixels));
        mChanged.notify_all();
    }
}

void PictureWriter::runGuarded(const Job& job) {
    try {
        mFiles.write(job.number, {mWidth, mHeight, job.pixels});
        const std::lock_guard lock(mLock);
        ++mWritten;
    } catch (const std::exception& error) {
        note(error.what());
        const std::lock_guard lock(mLock);
        ++mGivenUp;
    }
}

void PictureWriter::note(const std::string& problem) {
    const std::lock_guard lock(mLock);
    if (mProblem.empty()) mProblem = problem;
}

uint64_t PictureWriter::written() const {
    const std::lock_guard lock(mLock);
    return mWritten;
}

uint64_t PictureWriter::givenUp() const {
    const std::lock_guard lock(mLock);
    return mGivenUp;
}

std::string PictureWriter::problem() const {
    const std::lock_guard lock(mLock);
    return mProblem;
}

}  // namespace quillon::tool
