// What the leak sanitizer is told in the tests that talk to a calendar server. The server's client
// library leaks a few bytes for each connection, which the sanitizer's quick look at the stack
// knows by GLib's allocation alone; the thorough one hangs in a thread of that library.

extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:g_malloc0\n";
}
