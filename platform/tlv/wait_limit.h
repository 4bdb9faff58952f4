// How long one call may wait for a descriptor: what its caller asks for, cut to a limit of the
// process. Programs for people set a limit so that a silent daemon does not hold them for a minute.
#pragma once

#include <cstdint>

/// Largest wait of any call from now on, in milliseconds; 0 = no limit. Any thread.
void platform_SetWaitLimit(uint32_t milliseconds) noexcept;

/// The wait in milliseconds that `wait` stands for: its low 16 bits, at most the limit. Any thread.
uint32_t platform_BoundWait(uint32_t wait) noexcept;
