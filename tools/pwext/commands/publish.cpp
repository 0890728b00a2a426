// pwext publish OUTPUT_FOLDER IMAGE_FOLDER: publish as a host does, and
// optionally write the whole page around the object's HTML.
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "command.h"
#include "host_options.h"
#include "html/text_replace.h"
#include "pwext_io.h"

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
    FileResult CreateFolder(const std::string& path) override {
        FileResult result = inner_->CreateFolder(path);
        if (result) WriteOutput("created " + path + "\n");
        return result;
    }
    FileResult CopyFileOverwriting(const std::string& from, const std::string& to) override {
        return Report(inner_->CopyFileOverwriting(from, to), "copied " + from + " -> " + to);
    }
    FileResult WriteWholeFile(const std::string& path, std::string_view bytes) override {
        return Report(inner_->WriteWholeFile(path, bytes), "wrote " + path);
    }
    int Failures() const { return failures_; }

private:
    FileResult Report(FileResult result, const std::string& done) {
        if (result) {
            WriteOutput(done + "\n");
        } else {
            ++failures_;
            std::fflush(stdout);
            std::fprintf(stderr, "pwext: %s\n", result.why().c_str());
        }
        return result;
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
// HTML right after <body>, then the object's body with its geometry. Like
// the pages of the host's editors, it is an HTML 4.01 Transitional document
// without a system identifier, which browsers render in quirks mode; there
// a bare number such as the font size "10" is a length in pixels, as
// definitions written for such editors expect.
std::string Page(CExtensionEngine& engine, const std::string& context, const Geometry& g) {
    std::string body = engine.GetHtml(context.c_str());
    ReplaceAll(body, "$LEFT$", std::to_string(g.left));
    ReplaceAll(body, "$TOP$", std::to_string(g.top));
    ReplaceAll(body, "$WIDTH$", std::to_string(g.width));
    ReplaceAll(body, "$HEIGHT$", std::to_string(g.height));
    ReplaceAll(body, "$Z_INDEX$", "1");
    return "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\r\n<html>\r\n<head>\r\n"
           "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">\r\n"
           "<title>" +
           engine.GetToolbarText() + "</title>\r\n" + engine.GetHeaderHtml() + "\r\n</head>\r\n<body>\r\n" +
           engine.GetStartofPageHTML() + "\r\n" + body + "\r\n</body>\r\n</html>\r\n";
}

namespace fs = std::filesystem;

// Where a path leads, for comparing folders however they are spelt: "./site",
// "site/", an absolute path and a symbolic link to the folder all lead to the
// same place. The last part is kept as it is, so an image folder that is a
// link inside the output folder is still inside it.
fs::path PlaceOf(const std::string& path) {
    std::error_code error;
    fs::path absolute = fs::absolute(path, error).lexically_normal();
    if (!absolute.has_filename()) absolute = absolute.parent_path();
    fs::path parent = fs::weakly_canonical(absolute.parent_path(), error);
    return error ? absolute : parent / absolute.filename();
}

// The image folder as the page reaches it: its path relative to the output
// folder, spelt with '/', when it lies inside ("." for the output folder
// itself, so pictures are "./name", not "/name"); nothing otherwise.
std::optional<std::string> PageContextOf(const std::string& outputFolder, const std::string& imageFolder) {
    std::error_code error;
    fs::path output = fs::weakly_canonical(PlaceOf(outputFolder), error);
    fs::path images = PlaceOf(imageFolder);
    fs::path relative = images.lexically_relative(output);
    if (relative.empty() || *relative.begin() == "..") return std::nullopt;
    return relative.generic_string();
}

// Refuses a plan that leaves something out or would replace a file of the
// user's with another one published under the same name, before anything
// is written. (The same picture listed twice is published once more; two
// payload files of one name are the definition's own business: the later
// one wins, as in the plug-in.)
void CheckPlan(const PublishPlan& plan) {
    if (!plan.leftOut.empty()) throw Failure{"publish: " + plan.leftOut.front() + "; nothing was published"};
    std::map<fs::path, const PublishStep*> targets;
    auto origin = [](const PublishStep& s) {
        return s.action == PublishStep::Action::kCopy ? "'" + s.source + "'" : std::string("the definition");
    };
    for (const PublishStep& step : plan.steps) {
        if (step.action == PublishStep::Action::kMakeFolders) continue;
        auto [at, added] = targets.emplace(PlaceOf(step.target), &step);
        if (added) continue;
        const PublishStep& earlier = *at->second;
        bool copies = earlier.action == PublishStep::Action::kCopy || step.action == PublishStep::Action::kCopy;
        bool samePicture = earlier.action == step.action && PlaceOf(earlier.source) == PlaceOf(step.source);
        if (copies && !samePicture)
            throw Failure{"publish: two files would be published as '" + step.target + "': " + origin(earlier) +
                          " and " + origin(step) + "; nothing was published"};
        at->second = &step;
    }
}

int RunPublish(Args args) {
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

    // The page refers to the pictures through the image folder's path
    // below the output folder, however the two are spelt.
    std::optional<std::string> reach = PageContextOf(folders[0], folders[1]);
    if (reach) {
        engine.SetPageContext(*reach);
    } else if (!haveContext) {
        std::fprintf(stderr,
                     "pwext: warning: the image folder '%s' is not inside the output folder '%s', so the page "
                     "cannot refer to its pictures; give --context with the address they are served from\n",
                     folders[1].c_str(), folders[0].c_str());
    }

    // As a host does: make both folders, then let the object publish into
    // the output folder given with its separator. Nothing is made when the
    // plan is refused.
    std::string output = folders[0];
    if (output.back() != separator) output += separator;
    PublishPlan plan = engine.PlanCopyFiles(output, folders[1]);
    if (reach) engine.SetPageContext(*reach);
    CheckPlan(plan);
    host.RequireWithinSizeLimit();
    engine.CreateDirectoryPath(output);
    engine.CreateDirectoryPath(folders[1]);
    engine.RunPlan(plan);

    if (!page.empty()) {
        std::string path = page.front() == separator ? page : output + page;
        std::string html = Page(engine, haveContext ? context : engine.GetPageContext(), geometry);
        host.RequireWithinSizeLimit();
        WriteFileAtomically(path, html);
        WriteOutput("wrote " + path + "\n");
    }
    if (files->Failures() > 0) throw Failure{std::to_string(files->Failures()) + " file(s) could not be published"};
    return 0;
}

}  // namespace

PWEXT_COMMAND(publish, "publish",
              "OUTPUT_FOLDER IMAGE_FOLDER [--page FILE] [--geometry L,T,W,H] [--context TEXT]: publish the object",
              RunPublish);

}  // namespace pwext
