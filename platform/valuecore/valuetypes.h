#pragma once

// All kinds of values that ValueCore has.
#include <valuecore/value.h>
#include <valuecore/valuenumeric.h>
#include <valuecore/valueselection.h>
