#pragma once
// A literal of the platform's 16-bit WCHAR.
#define WIDE_TEXT(literal) L##literal
