#pragma once

// Between CSignalWatch and the system's way of telling a program that the
// user wants it to stop: one implementation file per system
// (PosixSignalHandlers.cpp, WinSignalHandlers.cpp).

namespace tarvix::cli::signals {

// What the handlers call; safe in a signal handler and on any thread.
void RequestStop() noexcept;
void RequestSend() noexcept;

// Routes the system's stop requests (and send requests, when watchSend) to
// the two calls above, and back to the previous handlers.
void Install(bool watchSend);
void Remove(bool watchSend);

} // namespace tarvix::cli::signals
