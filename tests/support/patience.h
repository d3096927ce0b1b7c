#pragma once

/// Milliseconds that a test waits for what must happen, on a machine that has much else to do.
inline constexpr int patience = 30'000;
