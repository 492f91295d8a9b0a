#pragma once
// No exception may leave a Qt slot or event handler: Qt's event dispatch is not built to
// unwind. The operations that report their own failures (package creation, skin loading)
// catch everything on their way; every slot and event filter of the shell runs its
// work through Guard, which stops anything else at the slot's edge, so that the event loop
// goes on and the window stays usable.

#include <QtGlobal>

#include <exception>
#include <utility>

namespace skin {

// Runs `work`; an exception that escapes it ends there, noted on the standard error stream.
template <typename Work>
void Guard(Work&& work) noexcept
{
    try {
        std::forward<Work>(work)();
    } catch (const std::exception& error) {
        qWarning("An operation failed: %s", error.what());
    } catch (...) {
        qWarning("An operation failed.");
    }
}

// `work` as a slot taking no arguments, run through Guard.
template <typename Work>
auto Guarded(Work work)
{
    return [work = std::move(work)]() mutable { Guard(work); };
}

}  // namespace skin
