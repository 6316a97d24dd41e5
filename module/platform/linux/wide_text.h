#pragma once
// A literal of the platform layer's 16-bit WCHAR.
#define WIDE_TEXT(literal) u##literal
