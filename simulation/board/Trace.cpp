#include "simulation/board/Trace.h"

namespace simulation {

void Trace::keep(bool on) {
    const std::lock_guard lock(mMutex);
    if (on) mLines.clear();
    mKeeps = on;
    mIsOn = mKeeps || mFile != nullptr;
}

bool Trace::writeTo(const std::string& path) {
    std::unique_ptr<std::FILE, CloseFile> file;
    if (path == "-") {
        file.reset(stderr);
    } else if (!path.empty()) {
        file.reset(std::fopen(path.c_str(), "we"));
        if (file == nullptr) return false;
    }
    const std::lock_guard lock(mMutex);
    mFile = std::move(file);
    mIsOn = mKeeps || mFile != nullptr;
    return true;
}

void Trace::add(const std::string& line) {
    if (!mIsOn) return;
    const std::lock_guard lock(mMutex);
    if (mKeeps && mLines.size() < kMostLines) mLines.push_back(line);
    if (mFile == nullptr) return;
    // Flushed at once: the last lines before a crash are the ones that matter.
    std::fputs((line + '\n').c_str(), mFile.get());
    std::fflush(mFile.get());
}

std::vector<std::string> Trace::lines() const {
    const std::lock_guard lock(mMutex);
    return mLines;
}

}  // namespace simulation
