#include "command_line.h"

#include <aaadom/codes.h>
#include <fcntl.h>
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "daemon.h"
#include "message.h"
#include "promise.h"
#include "stage.h"

/// The main of aaactl.
int aaactl_main(int argc, char** argv);

namespace fuzz {
namespace {

constexpr uint32_t kWait = 1000;  // milliseconds; the client sends at once
constexpr size_t kMostArguments = 40;
constexpr int kMostAnswers = 64;  // to one command that takes the same again and again

class Answers {
  public:
    void Set(Bytes answers) {
        const std::lock_guard<std::mutex> lock(mutex_);
        rest_.assign(answers.begin(), answers.end());
        used_ = 0;
        left_ = kMostAnswers;
    }
    /// Null when there is none left.
    Message Next() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (used_ >= rest_.size() || left_-- == 0) return nullptr;
        Input input(Bytes(rest_).subspan(used_));
        const uint8_t way = input.Byte();
        Message body = TakeMessage(input);
        if ((way & kAnswerRepeat) == 0) used_ = rest_.size() - input.Rest().size();
        if (way & kAnswerAsItIs) return body;
        Message reply(TLV_Create());
        const bool is_data = (way & kAnswerData) != 0;
        (void)AAA_AppendSubTlv(reply.get(), is_data ? DOM_REPLY_KIND_DATA : DOM_REPLY_KIND_RESULT,
                               body.get());
        return reply;
    }

  private:
    std::mutex mutex_;
    std::vector<uint8_t> rest_;
    size_t used_ = 0;
    int left_ = 0;
};

/// Both of the daemon's sockets.
class Server {
  public:
    Server() {
        FUZZ_PROMISE(LIPC_SetRuntimeDir(TemporaryDirectory().c_str()) == 0);
        for (const uint16_t sub : {DOM_LIPC_SUB_ENDPOINT, DOM_LIPC_RECORD_SUB_ENDPOINT}) {
            const int fd = LIPC_ServerOpen(DOM_LIPC_ENDPOINT, sub, 0600);
            FUZZ_PROMISE(fd >= 0);
            sockets_.push_back({fd, POLLIN, 0});
        }
        thread_ = std::thread([this] { Serve(); });
        thread_.detach();  // ends with the process
    }
    Answers answers;

  private:
    void Serve() {
        for (;;) {
            (void)poll(sockets_.data(), sockets_.size(), -1);
            for (const pollfd& socket : sockets_) {
                const int fd = LIPC_ServerAccept(socket.fd, nullptr);
                if (fd < 0) continue;
                const auto descriptor = static_cast<uintptr_t>(fd);
                const Message request(TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, descriptor, kWait));
                const Message reply = request ? answers.Next() : nullptr;
                if (reply) (void)TLV_Flush(reply.get(), TLV_FORM_DESCRIPTOR, kWait, descriptor);
                LIPC_Close(fd);
            }
        }
    }

    std::vector<pollfd> sockets_;
    std::thread thread_;
};

/// The words, none of which names anything outside the current directory.
std::vector<std::string> Words(const std::string& line, const std::string& run_dir) {
    std::vector<std::string> words = {"aaactl", "--run-dir", run_dir};
    std::string word;
    const auto end_word = [&] {
        if (!word.empty() && words.size() < kMostArguments) words.push_back(word);
        word.clear();
    };
    for (const char c : line) {
        const bool leads_out = c == '/' && (word.empty() || isalnum(word.back()) == 0);
        if (c == ' ') {
            end_word();
        } else if (c != '\0') {
            word += leads_out ? '_' : c == '\t' ? ' ' : c;
        }
    }
    end_word();
    return words;
}

/// An empty directory with the document in it, entered for as long as the object lives.
class CurrentDirectory {
  public:
    explicit CurrentDirectory(Bytes document) : before_(open(".", O_PATH | O_CLOEXEC)) {
        const std::string directory = TemporaryDirectory() + "/current";
        std::filesystem::remove_all(directory);
        FUZZ_PROMISE(std::filesystem::create_directory(directory));
        FUZZ_PROMISE(chdir(directory.c_str()) == 0);
        std::ofstream file("document", std::ios::binary);
        file.write(reinterpret_cast<const char*>(document.data()),
                   static_cast<std::streamsize>(document.size()));
    }
    ~CurrentDirectory() {
        (void)!fchdir(before_);
        close(before_);
    }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

  private:
    const int before_;
};

int RunMain(const std::string& line, const std::string& run_dir) {
    std::vector<std::string> words = Words(line, run_dir);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return aaactl_main(static_cast<int>(words.size()), arguments.data());
}

int RunWithDaemon(const std::string& line) {
    const int stop = eventfd(0, EFD_CLOEXEC);
    std::promise<void> ready;
    std::thread thread([&] {
        Daemon daemon;
        ready.set_value();
        daemon.ServeUntil(stop);
    });
    ready.get_future().wait();
    const int code = RunMain(line, Daemon::RunDirectory());
    FUZZ_PROMISE(eventfd_write(stop, 1) == 0);
    thread.join();
    close(stop);
    return code;
}

}  // namespace

int RunCommand(const std::string& line, Bytes document, Bytes answers) {
    static const int no_input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    (void)dup2(no_input, STDIN_FILENO);
    const CurrentDirectory directory(document);
    if (!answers.empty() && (answers[0] & kAnswerReal) != 0) return RunWithDaemon(line);
    static Server* const server = new Server;  // its thread never ends
    server->answers.Set(answers);
    return RunMain(line, TemporaryDirectory());
}

}  // namespace fuzz
