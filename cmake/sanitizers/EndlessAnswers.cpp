// Qt's thread that reads an answer without an end hears of nothing else meanwhile. Told to end, it does so as soon as the
// answer stops, and never comes to take the aborted request apart.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions()
{
    return "leak:libQt6Network.so\nleak:libQt6Core.so\n";
}
