#pragma once
// Unique numbered names: "Screen1", "Screen2", ...

#include "core/types.h"

namespace Vantora_TesserinePro {

// The first name made of prefix and a decimal number above number that no
// entry of names holds (case-insensitively). Kept edges: with all numbers up
// to 999 taken the result is the last candidate tried; with number of 1000
// or more it is empty.
string _001GetNewName(const string& prefix, long long number, const string_array& names);

// The next free name after name: "Screen1" -> "Screen2", "P 2.6mm" ->
// "P 2.6mm1", "12" with fallback "Screen" -> "Screen13".
string _001IncrementName(const string& name, const string& fallback, const string_array& names);

} // namespace Vantora_TesserinePro
