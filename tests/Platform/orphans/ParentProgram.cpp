// orphans-parent COMMAND: lets the shell perform COMMAND as a child program, started by a thread
// that ends at once. Says "alone" when that thread has gone, then what the child says, and stays.

#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"

#include <cstdio>
#include <string>
#include <thread>

#include <unistd.h>

using namespace ostrella;

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    Pipe pipe = Pipe::make();
    ChildProcess child;
    std::string starter;
    std::thread([&] {
        starter = "/proc/self/task/" + std::to_string(::gettid());
        child.start({.executable = "/bin/sh", .arguments = {"-c", argv[1]}, .directory = {}},
            pipe.writeEnd.get());
    }).join();
    // A thread is joined a moment before the system takes it for ended.
    while (::access(starter.c_str(), F_OK) == 0) {
        std::this_thread::yield();
    }
    pipe.writeEnd.close();
    std::puts("alone");
    std::fflush(stdout);
    char buffer[256];
    ssize_t count = 0;
    while ((count = ::read(pipe.readEnd.get(), buffer, sizeof buffer)) > 0) {
        std::fwrite(buffer, 1, static_cast<std::size_t>(count), stdout);
        std::fflush(stdout);
    }
    return child.wait();
}
