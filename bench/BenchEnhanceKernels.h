#pragma once

/// The plain pass: each of 256 counters is added to its fellow.
void XfnPlainCounterPass(const long long* from, long long* to);
