#pragma once

// The library is built with hidden visibility; only the entry classes that a
// host application resolves carry this mark.
#define VELMORA_EXPORT __attribute__((visibility("default")))
