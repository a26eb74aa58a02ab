// molo-fingerdetect: runs the finger detector over recorded video, or over
// its built-in demo clip. See --help.
#include <cstdio>

#include "tool.h"

int main(int argc, char** argv) {
    return fingerdetect::run_tool(argc, argv, {stdin, stdout, stderr});
}
