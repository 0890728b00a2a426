// The extension engine's costs with the built-in definition: construction,
// the design-view and published body with growing image lists, and
// publishing 100 images. Each cost should grow linearly with the images.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "definition/builtin_definition.h"
#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "platform/file_system.h"
#include "platform/libxslt_transformer.h"
#include "xml/xml_document.h"

namespace {

// Accepts every operation and keeps nothing, so publishing is measured
// without the disk.
class DiscardingFileSystem : public CFileSystem {
public:
    PathStyle GetPathStyle() const override { return PathStyle::kPosix; }
    FileResult CreateFolder(const std::string&) override { return {}; }
    FileResult CopyFileOverwriting(const std::string& from, const std::string& to) override {
        bytes += from.size() + to.size();
        return {};
    }
    FileResult WriteWholeFile(const std::string&, std::string_view content) override {
        bytes += content.size();
        return {};
    }
    std::size_t bytes = 0;
};

std::string ImageList(int count) {
    std::vector<ImageListEntry> images;
    for (int i = 0; i < count; ++i) {
        ImageListEntry entry;
        entry.fileName = "/home/user/Pictures/holiday-" + std::to_string(i) + ".jpg";
        entry.title = "Holiday picture " + std::to_string(i);
        entry.description = "A day at the sea, number " + std::to_string(i);
        images.push_back(entry);
    }
    return WriteImageList(images);
}

struct Fixture {
    DiscardingFileSystem files;
    std::unique_ptr<CXsltTransformer> xslt = CreateLibxsltTransformer();
    ExtensionServices Services() {
        ExtensionServices s;
        s.fileSystem = &files;
        s.transformer = xslt.get();
        return s;
    }
};

void BM_Engine_ParseDefinition(benchmark::State& state) {
    std::string_view text = BuiltinDefinition();
    for (auto _ : state) {
        CXmlDocument document;
        document.Parse(text);
        benchmark::DoNotOptimize(document.GetRoot());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Engine_ParseDefinition);

void BM_Engine_Construct(benchmark::State& state) {
    Fixture f;
    std::string_view text = BuiltinDefinition();
    for (auto _ : state) {
        CExtensionEngine engine(text, f.Services());
        benchmark::DoNotOptimize(engine.GetHtmlCache().data());
    }
}
BENCHMARK(BM_Engine_Construct);

void BM_Engine_UpdateHtmlDesign(benchmark::State& state) {
    Fixture f;
    CExtensionEngine engine(BuiltinDefinition(), f.Services());
    engine.SetValue("$images$", ImageList(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        engine.UpdateHtml(0);
        benchmark::DoNotOptimize(engine.GetHtmlCache().data());
    }
}
BENCHMARK(BM_Engine_UpdateHtmlDesign)->Arg(0)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void BM_Engine_GetHtmlPublished(benchmark::State& state) {
    Fixture f;
    CExtensionEngine engine(BuiltinDefinition(), f.Services());
    engine.SetValue("$images$", ImageList(static_cast<int>(state.range(0))));
    engine.SetValue("$enablereflection$", "true");
    for (auto _ : state) {
        std::string html = engine.GetHtml("images");
        benchmark::DoNotOptimize(html.data());
    }
}
BENCHMARK(BM_Engine_GetHtmlPublished)->Arg(0)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

// Hands every transformation on to libxslt and keeps the last texts, so the
// reference below transforms exactly what the engine transformed.
class RecordingTransformer : public CXsltTransformer {
public:
    std::string Transform(std::string_view listXml, std::string_view stylesheet) override {
        list.assign(listXml);
        sheet.assign(stylesheet);
        return inner->Transform(listXml, stylesheet);
    }
    std::unique_ptr<CXsltTransformer> inner = CreateLibxsltTransformer("WINDOWS-1252", SIZE_MAX);
    std::string list, sheet;
};

// The references: the image list and style sheet that GetHtmlPublished
// (or UpdateHtmlDesign, which transforms the list with its full paths)
// transformed, through libxslt alone, the style sheet compiled once (the
// transformer keeps it), with the code-page conversions on both sides and
// the whole result tree built before it is saved.
void TransformLikeTheEngine(benchmark::State& state, bool published) {
    DiscardingFileSystem files;
    RecordingTransformer recorder;
    ExtensionServices services;
    services.fileSystem = &files;
    services.transformer = &recorder;
    CExtensionEngine engine(BuiltinDefinition(), services);
    engine.SetValue("$images$", ImageList(static_cast<int>(state.range(0))));
    if (published) {
        engine.SetValue("$enablereflection$", "true");
        engine.GetHtml("images");
    } else {
        engine.UpdateHtml(0);
    }
    for (auto _ : state) {
        std::string html = recorder.inner->Transform(recorder.list, recorder.sheet);
        benchmark::DoNotOptimize(html.data());
    }
}
void BM_Engine_LibxsltCompiled(benchmark::State& state) { TransformLikeTheEngine(state, true); }
void BM_Engine_LibxsltCompiledDesign(benchmark::State& state) { TransformLikeTheEngine(state, false); }
BENCHMARK(BM_Engine_LibxsltCompiled)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_Engine_LibxsltCompiledDesign)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void BM_Engine_CopyFiles(benchmark::State& state) {
    Fixture f;
    CExtensionEngine engine(BuiltinDefinition(), f.Services());
    engine.SetValue("$images$", ImageList(static_cast<int>(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(engine.CopyFiles("/srv/site/", "/srv/site/images/"));
}
BENCHMARK(BM_Engine_CopyFiles)->Arg(0)->Arg(100)->Arg(1000);

}  // namespace
