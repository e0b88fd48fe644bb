#pragma once

/// Marks what the shared library exports; everything else is hidden.
#define XAPI __attribute__((visibility("default")))
