#pragma once

/// A symbol of one of the program's own modules, which is loaded for it and stays: its libraries
/// keep what they register for the process's life. Null where it cannot be had, of which `dlerror`
/// tells.
void* symbolOf(const char* module, const char* name);
