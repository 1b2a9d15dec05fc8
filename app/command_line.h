/// What the words of the command line mean.
#pragma once

/// Runs one command; the result is an ExitCode.
int RunCommandLine(int argc, char** argv);
