// pwext preview OUT.png [--size W,H] [--background COLOR]: what render method
// 2 shows in the design view, drawn by headless Chromium. The design body
// HTML goes into the same page text as the plug-in's snapshot renderer
// loads (html/snapshot_page.h); once the page has loaded, its body is
// prepared as the renderer prepares it (transparent, no border, no top, left
// and bottom margins, no scroll bars) and the background colour shows
// through where the HTML draws nothing. Chromium is /usr/bin/chromium or the
// program that CHROMIUM names, driven through its DevTools protocol on a
// pipe, in a profile of its own that is removed afterwards.
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <string>

#include "command.h"
#include "host_options.h"
#include "html/snapshot_page.h"
#include "pwext_io.h"
#include "xml/base64.h"

#ifndef _WIN32
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

extern char** environ;
#endif

namespace pwext {
namespace {

const char kUsage[] = "usage: pwext preview OUT.png [--size W,H] [--background #RRGGBB] [host options]";
constexpr int kLargest = 4096;

// What the renderer does to the body once the document is complete.
const char kPrepareBody[] =
    "(function () {"
    " var body = document.body;"
    " body.bgColor = 'transparent';"
    " body.style.borderStyle = 'none';"
    " ['topmargin', 'leftmargin', 'bottommargin'].forEach(function (name) { body.setAttribute(name, 0); });"
    " body.setAttribute('scroll', 'no');"
    "})()";

struct Size {
    int width = 640;
    int height = 640;
};

Size ParseSize(const std::string& text) {
    std::size_t comma = text.find(',');
    if (comma == std::string::npos) throw UsageError{"preview: --size needs W,H"};
    Size size{ParseInt(text.substr(0, comma), "width"), ParseInt(text.substr(comma + 1), "height")};
    if (size.width < 1 || size.height < 1 || size.width > kLargest || size.height > kLargest)
        throw UsageError{"preview: --size must be between 1,1 and 4096,4096"};
    return size;
}

// "#RRGGBB" as 0xRRGGBB.
unsigned long ParseColour(const std::string& text) {
    bool ok = text.size() == 7 && text[0] == '#';
    for (std::size_t i = 1; ok && i < text.size(); ++i) ok = std::isxdigit(static_cast<unsigned char>(text[i])) != 0;
    if (!ok) throw UsageError{"preview: --background needs #RRGGBB, got '" + text + "'"};
    return std::strtoul(text.c_str() + 1, nullptr, 16);
}

// The width and height in a PNG file's header, or false for anything else.
bool PngSize(const std::string& png, Size& size) {
    static const char kSignature[] = "\x89PNG\r\n\x1a\n";
    if (png.size() < 24 || png.compare(0, 8, kSignature, 8) != 0 || png.compare(12, 4, "IHDR") != 0) return false;
    auto number = [&png](std::size_t at) {
        int value = 0;
        for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(png[at + i]);
        return value;
    };
    size = Size{number(16), number(20)};
    return true;
}

#ifdef _WIN32

std::string Screenshot(const std::string&, const Size&, unsigned long) {
    throw Failure{"preview: runs headless Chromium, which only the Linux build of pwext drives"};
}

#else

constexpr int kChromiumSeconds = 60;

// A folder of its own under the temporary folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/pwext-preview-XXXXXX";
        if (!mkdtemp(pattern.data())) throw Failure{"preview: cannot make a temporary folder"};
        path_ = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// A file: address for an absolute path.
std::string FileUrl(const std::string& path) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (unsigned char c : path) {
        if (std::isalnum(c) || c == '/' || c == '-' || c == '_' || c == '.' || c == '~') {
            url += static_cast<char>(c);
        } else {
            url += '%';
            url += kHex[c >> 4];
            url += kHex[c & 15];
        }
    }
    return url;
}

// The text of a string field of a protocol message ("name":"text"), or empty.
std::string StringField(const std::string& message, const std::string& name) {
    std::string key = "\"" + name + "\":\"";
    std::size_t at = message.find(key);
    if (at == std::string::npos) return {};
    at += key.size();
    return message.substr(at, message.find('"', at) - at);
}

// Headless Chromium on the other end of its DevTools pipe: commands go to
// its descriptor 3, answers and events come from its descriptor 4, each
// message ended by a zero byte. Everything must be done within one minute.
class Chromium {
public:
    Chromium(const std::string& program, const std::string& profile, const std::string& log)
        : program_(program), deadline_(std::chrono::steady_clock::now() + std::chrono::seconds(kChromiumSeconds)) {
        int commands[2], answers[2];
        if (pipe(commands) != 0 || pipe(answers) != 0) throw Failure{"preview: cannot make a pipe"};
        // Out of the way of descriptors 3 and 4, and closed in the browser.
        for (int* fd : {&commands[0], &commands[1], &answers[0], &answers[1]}) {
            int moved = fcntl(*fd, F_DUPFD_CLOEXEC, 10);
            close(*fd);
            *fd = moved;
        }
        std::vector<std::string> arguments = {program,
                                              "--headless",
                                              "--remote-debugging-pipe",
                                              "--no-sandbox",
                                              "--disable-gpu",
                                              "--disable-quic",
                                              "--no-first-run",
                                              "--disable-background-networking",
                                              "--disable-component-update",
                                              "--disable-sync",
                                              "--hide-scrollbars",
                                              "--user-data-dir=" + profile,
                                              "about:blank"};
        std::vector<char*> argv;
        for (std::string& a : arguments) argv.push_back(a.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_adddup2(&actions, 1, 2);
        posix_spawn_file_actions_adddup2(&actions, commands[0], 3);
        posix_spawn_file_actions_adddup2(&actions, answers[1], 4);
        int started = posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(commands[0]);
        close(answers[1]);
        to_ = commands[1];
        from_ = answers[0];
        if (started != 0) {
            pid_ = 0;
            Close();
            throw Failure{"preview: cannot run " + program + ": " + std::strerror(started)};
        }
    }
    ~Chromium() {
        if (to_ >= 0) Send("{\"id\":0,\"method\":\"Browser.close\"}");
        Close();
        if (!pid_) return;
        int status = 0;
        for (int i = 0; i < 250 && waitpid(pid_, &status, WNOHANG) == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        if (waitpid(pid_, &status, WNOHANG) == 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, &status, 0);
        }
    }
    Chromium(const Chromium&) = delete;
    Chromium& operator=(const Chromium&) = delete;

    // Runs a command (of a page's session when given) and returns its answer.
    std::string Call(const std::string& method, const std::string& params, const std::string& session = "") {
        int id = ++lastId_;
        std::string message = "{\"id\":" + std::to_string(id) + ",\"method\":\"" + method + "\",\"params\":" + params;
        if (!session.empty()) message += ",\"sessionId\":\"" + session + "\"";
        Send(message + "}");
        std::string start = "{\"id\":" + std::to_string(id) + ",";
        for (;;) {
            std::string answer = Next();
            if (answer.compare(0, start.size(), start) != 0) {
                events_.push_back(answer);
                continue;
            }
            if (answer.find("\"error\":") != std::string::npos)
                throw Failure{"preview: " + program_ + " refused " + method + ": " + StringField(answer, "message")};
            return answer;
        }
    }
    // Waits for an event of a session.
    void WaitFor(const std::string& event, const std::string& session) {
        auto matches = [&](const std::string& message) {
            return message.find("\"method\":\"" + event + "\"") != std::string::npos &&
                   StringField(message, "sessionId") == session;
        };
        for (const std::string& seen : events_)
            if (matches(seen)) return;
        while (!matches(Next())) {
        }
    }

private:
    void Send(const std::string& message) {
        std::string bytes = message + '\0';
        for (std::size_t sent = 0; sent < bytes.size();) {
            ssize_t n = write(to_, bytes.data() + sent, bytes.size() - sent);
            if (n <= 0) throw Failure{"preview: " + program_ + " stopped listening"};
            sent += static_cast<std::size_t>(n);
        }
    }
    std::string Next() {
        for (;;) {
            std::size_t end = buffer_.find('\0');
            if (end != std::string::npos) {
                std::string message = buffer_.substr(0, end);
                buffer_.erase(0, end + 1);
                return message;
            }
            auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                throw Failure{"preview: " + program_ + " did not finish in " + std::to_string(kChromiumSeconds) + " s"};
            pollfd wait = {from_, POLLIN, 0};
            if (poll(&wait, 1, static_cast<int>(left.count())) <= 0) continue;
            char chunk[65536];
            ssize_t n = read(from_, chunk, sizeof chunk);
            if (n <= 0) throw Failure{"preview: " + program_ + " ended early"};
            buffer_.append(chunk, static_cast<std::size_t>(n));
        }
    }
    void Close() {
        if (to_ >= 0) close(to_);
        if (from_ >= 0) close(from_);
        to_ = from_ = -1;
    }

    std::string program_;
    std::chrono::steady_clock::time_point deadline_;
    pid_t pid_ = 0;
    int to_ = -1;
    int from_ = -1;
    int lastId_ = 0;
    std::string buffer_;
    std::vector<std::string> events_;
};

std::string Screenshot(const std::string& page, const Size& size, unsigned long background) {
    ScratchFolder folder;
    WriteFileAtomically(folder / "page.html", page);
    const char* program = std::getenv("CHROMIUM");
    // A browser that goes away must not take pwext with it.
    signal(SIGPIPE, SIG_IGN);
    Chromium browser(program && *program ? program : "/usr/bin/chromium", folder / "profile", folder / "chromium.log");
    std::string target = StringField(browser.Call("Target.createTarget", "{\"url\":\"about:blank\"}"), "targetId");
    std::string session = StringField(
        browser.Call("Target.attachToTarget", "{\"targetId\":\"" + target + "\",\"flatten\":true}"), "sessionId");
    browser.Call("Emulation.setDeviceMetricsOverride",
                 "{\"width\":" + std::to_string(size.width) + ",\"height\":" + std::to_string(size.height) +
                     ",\"deviceScaleFactor\":1,\"mobile\":false}",
                 session);
    browser.Call("Emulation.setDefaultBackgroundColorOverride",
                 "{\"color\":{\"r\":" + std::to_string(background >> 16) +
                     ",\"g\":" + std::to_string((background >> 8) & 0xFF) +
                     ",\"b\":" + std::to_string(background & 0xFF) + ",\"a\":1}}",
                 session);
    browser.Call("Page.enable", "{}", session);
    browser.Call("Page.navigate", "{\"url\":" + JsonLatin1(FileUrl(folder / "page.html")) + "}", session);
    browser.WaitFor("Page.loadEventFired", session);
    browser.Call("Runtime.evaluate", "{\"expression\":" + JsonLatin1(kPrepareBody) + "}", session);
    std::string shot = browser.Call("Page.captureScreenshot", "{\"format\":\"png\"}", session);
    return Base64DecodeOrKeep(StringField(shot, "data"));
}

#endif

int RunPreview(Args args) {
    HostOptions options = TakeHostOptions(args, "preview");
    std::string out;
    Size size;
    unsigned long background = 0xFFFFFF;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--size") {
            size = ParseSize(OptionValue(args, i, "preview"));
        } else if (args[i] == "--background") {
            background = ParseColour(OptionValue(args, i, "preview"));
        } else if (args[i].rfind("--", 0) == 0 || !out.empty()) {
            throw UsageError{"preview: unexpected '" + args[i] + "'"};
        } else {
            out = args[i];
        }
    }
    if (out.empty()) throw UsageError{kUsage};

    Host host(options);
    host.Engine().UpdateHtml(0);
    std::string png = Screenshot(SnapshotPageText(host.Engine().GetHtmlCache()), size, background);
    Size shot;
    if (!PngSize(png, shot) || shot.width != size.width || shot.height != size.height)
        throw Failure{"preview: Chromium's picture is not a PNG of " + std::to_string(size.width) + " x " +
                      std::to_string(size.height)};
    WriteFileAtomically(out, png);
    return 0;
}

}  // namespace

PWEXT_COMMAND(preview, "preview",
              "OUT.png [--size W,H] [--background #RRGGBB]: the design view's HTML snapshot, through Chromium",
              RunPreview);

}  // namespace pwext
