// Runs a piece of a console test in a child process, since the console
// functions rebind the process's standard streams. The child's body returns
// a list of problems (empty when all went well); the parent gets it back.
#pragma once

#include <functional>
#include <string>

// Forks, runs body in the child with a time limit of 60 seconds and exits the
// child without running atexit handlers. Gives the child's problems, or a
// text telling how the child ended when it didn't end normally.
std::string RunInChild(const std::function<std::string()>& body);

// Describes a standard descriptor: "tty:<device>" for a terminal, otherwise
// "dev:ino" of what it refers to; used to see whether it was rebound.
std::string DescribeFd(int fd);

// Opens a pseudo-terminal pair; the master is non-blocking. False on failure.
bool OpenPty(int* master, int* slave);

// Everything readable from a non-blocking master within `wait_ms` after the
// last byte came.
std::string DrainMaster(int master, int wait_ms);
