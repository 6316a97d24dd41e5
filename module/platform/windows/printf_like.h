#pragma once
// The Windows runtime's formats are not GNU printf's, so no check.
#define PRINTF_LIKE(formatPosition, firstArgument)
