#pragma once

/// The test program's own operator new: counts what lives, and lets a planned allocation of this thread fail.
namespace allocations {

/// Lets the \p n -th allocation from now on, counted from 1, throw std::bad_alloc.
void plan(long n);
/// Forgets the plan. \return whether the fault has happened
bool takeFault();
/// \return allocations that have not been released, of all threads
long alive();

}  // namespace allocations
