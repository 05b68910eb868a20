// Gives every target the event loop that the program's classes live on.
#include "Fuzz.h"

#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static int count = *argc;
    static char **words = *argv;
    static const QCoreApplication application(count, words);
    return 0;
}
