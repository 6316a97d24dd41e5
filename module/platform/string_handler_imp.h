#pragma once

#include "platform/string_handler.h"

// The level between the service and its platform implementation.
class StringHandlerImp : public StringHandler {};
