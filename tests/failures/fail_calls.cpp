// Runs a command in which one system call fails.
//
//     fail_calls CLASS N[+] REPORT COMMAND ARGUMENT...
//
// The Nth call of a class, counted from 1, fails without being carried out; with `+`, so do all calls of the
// class after it. The number of calls of the class goes to the file REPORT when the command has ended. The
// exit status is the command's, or 100 plus the number of the signal that ended it.
//
// The kernel asks this process about each call of the class, so nothing has to be known about the command,
// and its libraries fail as they would.
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <span>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int not_run = 125; // exit status of a failure of this program itself

constexpr int open_calls[] = {
    SYS_openat,
#ifdef SYS_open
    SYS_open,
#endif
};
constexpr int state_calls[] = {
    SYS_newfstatat,
    SYS_fstat,
    SYS_statx,
#ifdef SYS_stat
    SYS_stat,
#endif
};
constexpr int remove_calls[] = {
    SYS_unlinkat,
#ifdef SYS_unlink
    SYS_unlink,
#endif
};
constexpr int close_calls[] = {SYS_close};
constexpr int read_calls[] = {SYS_read, SYS_readv, SYS_pread64};
constexpr int write_calls[] = {SYS_write, SYS_writev, SYS_pwrite64};
constexpr int seek_calls[] = {SYS_lseek};
// Not brk: glibc takes what it returns for an address.
constexpr int memory_calls[] = {SYS_mmap, SYS_mremap, SYS_mprotect};
constexpr int thread_calls[] = {SYS_clone, SYS_clone3};

struct call_class {
    std::string_view name;
    std::span<const int> calls;
    int error;
};

constexpr call_class classes[] = {
    {"open", open_calls, EACCES},     {"close", close_calls, EIO},      {"read", read_calls, EIO},
    {"write", write_calls, ENOSPC},   {"message", write_calls, ENOSPC}, {"seek", seek_calls, EIO},
    {"state", state_calls, EACCES},   {"remove", remove_calls, EACCES}, {"memory", memory_calls, ENOMEM},
    {"thread", thread_calls, EAGAIN},
};

[[noreturn]] void stop(const char *what) {
    std::perror(what);
    std::_Exit(not_run);
}

// Makes the kernel ask about each of the calls of this process and those it starts. The result is a file
// descriptor for its questions.
int ask_about(std::span<const int> calls) {
    std::vector<sock_filter> program;
    program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const auto to_question = static_cast<std::uint8_t>(calls.size() - i);
        program.push_back(
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(calls[i]), to_question, 0));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        stop("no_new_privs");
    }
    const long listener =
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter);
    if (listener < 0) {
        stop("seccomp");
    }
    return static_cast<int>(listener);
}

struct passed_descriptor {
    char byte = 0;
    iovec content = {&byte, 1};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control = {};
    msghdr message = {nullptr, 0, &content, 1, control.data(), control.size(), 0};
};

void send_descriptor(int socket, int descriptor) {
    passed_descriptor p;
    cmsghdr *const header = CMSG_FIRSTHDR(&p.message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    if (sendmsg(socket, &p.message, 0) < 0) {
        stop("sendmsg");
    }
}

int receive_descriptor(int socket) {
    passed_descriptor p;
    if (recvmsg(socket, &p.message, 0) <= 0 || !CMSG_FIRSTHDR(&p.message)) {
        std::_Exit(not_run); // the child has said why
    }
    int descriptor;
    std::memcpy(&descriptor, CMSG_DATA(CMSG_FIRSTHDR(&p.message)), sizeof descriptor);
    return descriptor;
}

// Messages are what goes to standard error; they have a class of their own.
bool is_counted(const call_class &wanted, const seccomp_data &call) {
    if (wanted.calls.data() != write_calls) {
        return true;
    }
    return (call.args[0] == STDERR_FILENO) == (wanted.name == "message");
}

// Answers the questions until no process is left that may ask. The result is the number of counted calls.
unsigned long answer(int listener, const call_class &wanted, unsigned long failing, bool and_all_later) {
    unsigned long count = 0;
    for (;;) {
        pollfd waiting = {listener, POLLIN, 0};
        if (poll(&waiting, 1, -1) < 0 && errno != EINTR) {
            stop("poll");
        }
        if (!(waiting.revents & POLLIN)) {
            if (waiting.revents & (POLLHUP | POLLERR)) {
                return count;
            }
            continue;
        }
        seccomp_notif question = {};
        if (ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &question) != 0) {
            continue; // who asked has gone
        }
        count += is_counted(wanted, question.data);
        seccomp_notif_resp response = {};
        response.id = question.id;
        const bool fails = and_all_later ? count >= failing : count == failing;
        if (fails && is_counted(wanted, question.data)) {
            response.error = -wanted.error;
        } else {
            response.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
        }
        ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &response);
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 5) {
        std::fputs("usage: fail_calls CLASS N[+] REPORT COMMAND ARGUMENT...\n", stderr);
        return not_run;
    }
    const call_class *wanted = nullptr;
    for (const call_class &c : classes) {
        wanted = c.name == argv[1] ? &c : wanted;
    }
    if (!wanted) {
        std::fprintf(stderr, "no class %s\n", argv[1]);
        return not_run;
    }
    char *rest;
    const unsigned long failing = std::strtoul(argv[2], &rest, 10);

    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
        stop("socketpair");
    }
    const pid_t child = fork();
    if (child == 0) {
        // Nothing of the class is called between the filter and the command but what cannot fail here.
        send_descriptor(sockets[1], ask_about(wanted->calls));
        execvp(argv[4], argv + 4);
        stop(argv[4]);
    }
    close(sockets[1]);
    const unsigned long count = answer(receive_descriptor(sockets[0]), *wanted, failing, *rest == '+');
    int status;
    waitpid(child, &status, 0);
    std::FILE *const report = std::fopen(argv[3], "w");
    if (!report || std::fprintf(report, "%lu\n", count) < 0 || std::fclose(report) != 0) {
        stop(argv[3]);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}
