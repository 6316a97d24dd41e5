#pragma once
// Lets the compiler check the arguments of a printf-style member function
// against its format; positions count the object as 1.
#define PRINTF_LIKE(formatPosition, firstArgument)                                                 \
    __attribute__((format(printf, formatPosition, firstArgument)))
