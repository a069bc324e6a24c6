// Threads that leave signals to the main thread, whose waiting for input they
// have to end.
#pragma once

#include <functional>
#include <thread>

std::thread StartQuietThread(std::function<void()> work);
