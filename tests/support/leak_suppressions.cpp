// What the libraries below the window toolkit keep until the program ends, for programs that are built with
// the address sanitizer.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libdbus\n";
}
