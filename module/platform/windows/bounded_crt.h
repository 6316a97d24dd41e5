#pragma once
// The C runtime declares its bounded functions (strncpy_s, wcstombs_s,
// _localtime64_s, ...), _TRUNCATE and STRUNCATE in its own headers.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <wchar.h>
