// pwext publish OUTPUT_FOLDER IMAGE_FOLDER: publish as a host does, and
// optionally write the whole page around the object's HTML.
#include <cstdio>
#include <memory>

#include "command.h"
#include "host_options.h"
#include "html/text_replace.h"
#include "io.h"

namespace pwext {
namespace {

const char kUsage[] =
    "usage: pwext publish OUTPUT_FOLDER IMAGE_FOLDER [--page FILE] [--geometry L,T,W,H] [--context TEXT] "
    "[host options]";

// Passes every operation to the machine's file system and reports it:
// what was written on standard output, what failed on standard error.
class ReportingFileSystem : public CFileSystem {
public:
    explicit ReportingFileSystem(std::unique_ptr<CFileSystem> inner) : inner_(std::move(inner)) {}

    PathStyle GetPathStyle() const override { return inner_->GetPathStyle(); }
    bool CreateFolder(const std::string& path) override {
        bool ok = inner_->CreateFolder(path);
        if (ok) WriteOutput("created " + path + "\n");
        return ok;
    }
    bool CopyFileOverwriting(const std::string& from, const std::string& to) override {
        bool ok = inner_->CopyFileOverwriting(from, to);
        Report(ok, "copied " + from + " -> " + to, "could not copy '" + from + "' to '" + to + "'");
        return ok;
    }
    bool WriteWholeFile(const std::string& path, std::string_view bytes) override {
        bool ok = inner_->WriteWholeFile(path, bytes);
        Report(ok, "wrote " + path, "could not write '" + path + "'");
        return ok;
    }
    int Failures() const { return failures_; }

private:
    void Report(bool ok, const std::string& done, const std::string& failed) {
        if (ok) {
            WriteOutput(done + "\n");
        } else {
            ++failures_;
            std::fflush(stdout);
            std::fprintf(stderr, "pwext: %s\n", failed.c_str());
        }
    }

    std::unique_ptr<CFileSystem> inner_;
    int failures_ = 0;
};

struct Geometry {
    int left = 0, top = 0, width = 800, height = 300;
};

Geometry ParseGeometry(const std::string& text) {
    Geometry g;
    int* fields[] = {&g.left, &g.top, &g.width, &g.height};
    std::size_t from = 0;
    for (int i = 0; i < 4; ++i) {
        std::size_t comma = text.find(',', from);
        if ((i < 3) != (comma != std::string::npos)) throw UsageError{"publish: --geometry needs L,T,W,H"};
        *fields[i] = ParseInt(text.substr(from, comma == std::string::npos ? std::string::npos : comma - from),
                              "--geometry number");
        from = comma + 1;
    }
    return g;
}

// The page a host would write: the head HTML in <head>, the start-of-page
// HTML right after <body>, then the object's body with its geometry.
std::string Page(CExtensionEngine& engine, const std::string& context, const Geometry& g) {
    std::string body = engine.GetHtml(context.c_str());
    ReplaceAll(body, "$LEFT$", std::to_string(g.left));
    ReplaceAll(body, "$TOP$", std::to_string(g.top));
    ReplaceAll(body, "$WIDTH$", std::to_string(g.width));
    ReplaceAll(body, "$HEIGHT$", std::to_string(g.height));
    ReplaceAll(body, "$Z_INDEX$", "1");
    return "<!DOCTYPE html>\r\n<html>\r\n<head>\r\n"
           "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1252\">\r\n"
           "<title>" + engine.GetToolbarText() + "</title>\r\n" +
           engine.GetHeaderHtml() + "\r\n</head>\r\n<body>\r\n" + engine.GetStartofPageHTML() + "\r\n" + body +
           "\r\n</body>\r\n</html>\r\n";
}

int RunPublish(const Args& arguments) {
    Args args = arguments;
    HostOptions options = TakeHostOptions(args, "publish");
    std::vector<std::string> folders;
    std::string page, context;
    bool haveContext = false, haveGeometry = false;
    Geometry geometry;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--page") {
            page = OptionValue(args, i, "publish");
        } else if (args[i] == "--geometry") {
            geometry = ParseGeometry(OptionValue(args, i, "publish"));
            haveGeometry = true;
        } else if (args[i] == "--context") {
            context = OptionValue(args, i, "publish");
            haveContext = true;
        } else if (args[i].rfind("--", 0) == 0) {
            throw UsageError{"publish: unknown option '" + args[i] + "'"};
        } else {
            folders.push_back(args[i]);
        }
    }
    if (folders.size() != 2 || folders[0].empty() || folders[1].empty()) throw UsageError{kUsage};
    if (page.empty() && (haveContext || haveGeometry))
        throw UsageError{"publish: --geometry and --context shape the page; give --page too"};

    auto reporting = std::make_unique<ReportingFileSystem>(CreateNativeFileSystem());
    ReportingFileSystem* files = reporting.get();
    Host host(options, std::move(reporting));
    CExtensionEngine& engine = host.Engine();
    const char separator = files->GetSeparator();

    // As a host does: make both folders, then let the object publish into
    // the output folder given with its separator.
    std::string output = folders[0];
    if (output.back() != separator) output += separator;
    engine.CreateDirectoryPath(output);
    engine.CreateDirectoryPath(folders[1]);
    engine.CopyFiles(output, folders[1]);

    if (!page.empty()) {
        std::string path = page.front() == separator ? page : output + page;
        std::string html = Page(engine, haveContext ? context : engine.GetPageContext(), geometry);
        WriteFileAtomically(path, html);
        WriteOutput("wrote " + path + "\n");
    }
    if (files->Failures() > 0)
        throw Failure{std::to_string(files->Failures()) + " file(s) could not be published"};
    return 0;
}

}  // namespace

PWEXT_COMMAND(publish, "publish",
              "OUTPUT_FOLDER IMAGE_FOLDER [--page FILE] [--geometry L,T,W,H] [--context TEXT]: publish the object",
              RunPublish);

}  // namespace pwext
