// Construction, property values and the project record of the engine.
#include "extension/extension_engine.h"

#include "extension/definition_root.h"
#include "platform/file_system.h"
#include "xml/xml_document.h"

CExtensionEngine::CExtensionEngine(std::string_view definitionText, ExtensionServices services)
    : services_(std::move(services)) {
    definition_.Parse(definitionText);
    DefinitionRootAttributes root = ReadDefinitionRootAttributes(*definition_.GetRoot());
    minWidth_ = root.minWidth;
    minHeight_ = root.minHeight;
    useDiv_ = root.useDiv;
    renderMethod_ = root.renderMethod;
    toolbarText_ = root.text;
    UpdateHtml(0);
}

char CExtensionEngine::Separator() const {
    return services_.fileSystem ? services_.fileSystem->GetSeparator() : SeparatorOf(PathStyle::kWindows);
}

const CXmlDocument& CExtensionEngine::SourceCopy() {
    if (!sourceCopy_) {
        sourceCopy_ = std::make_unique<CXmlDocument>();
        sourceCopy_->Parse(definition_.GetSourceText());
    }
    return *sourceCopy_;
}

void CExtensionEngine::ReplaceValues(const CHashedStringMap& values) {
    values_ = values;
    UpdateHtml(0);
}

std::string CExtensionEngine::CurrentValueOf(const CXmlElement& property) const {
    std::string variable = CXmlDocument::Unescape(property.GetAttribute("variable"));
    if (const std::string* set = values_.Find(variable)) return *set;
    return CXmlDocument::Unescape(property.GetAttribute("value"));
}

void CExtensionEngine::StoreRecord(CByteSink& sink) const { WriteProjectRecord(sink, id_, values_); }

RecordReadResult CExtensionEngine::LoadRecord(CByteSource& source) {
    ProjectRecord record;
    ProjectRecordProgress progress;
    RecordReadResult result = ReadProjectRecord(source, record, &progress);
    if (progress.idRead) id_ = record.id;
    for (const auto& [key, value] : record.pairs) values_.Set(key, value);
    if (result.ok()) UpdateHtml(0);
    return result;
}
