// The check as a program of its own, for hosts built by other compilers than the tests'.

#include "library_check.h"

#include <stdio.h>

int main(int nArguments, char** ppArguments)
{
    int nFailed = nArguments < 2;
    for (int i = 1; i < nArguments; i++) {
        const std::string sProblems = checkLibrary(ppArguments[i]);
        printf("%s: %s\n", ppArguments[i], sProblems.empty() ? "agreed" : sProblems.c_str());
        nFailed += !sProblems.empty();
    }
    return nFailed;
}
