#pragma once

#include <csignal>
#include <functional>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs `work` in a process of its own that is killed at its system call number `call`, counted
/// from 0, before the system carries that one out. False when the work was done before.
inline bool killedAt(int call, const std::function<void()> &work)
{
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    bool isEntry = true;
    for (int seen = 0;;) {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        waitpid(child, &status, 0);
        if (!WIFSTOPPED(status))
            return false;
        if (WSTOPSIG(status) != (SIGTRAP | 0x80))
            continue;
        if (isEntry && seen++ == call)
            break;
        isEntry = !isEntry;
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return true;
}
