#include "device/jsonnode.h"

#include "device/text.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace {

/// A parser takes some fourteen times the longest text it has read, so one that read a giant is not kept.
constexpr std::size_t MaxSpare = 65536;

/// The parser that the next document takes, if there is one.
std::unique_ptr<simdjson::dom::parser>& SpareParser() {
    thread_local std::unique_ptr<simdjson::dom::parser> pParser;
    return pParser;
}

}  // namespace

double JSONNode::AsNumber() const {
    double value = 0.0;
    bool bValue = false;
    if (m_element.get(value) == simdjson::SUCCESS) {
        return value;
    }
    if (m_element.get(bValue) == simdjson::SUCCESS) {
        return bValue ? 1.0 : 0.0;
    }
    const std::string_view sText = StringText();
    value = QByteArray::fromRawData(sText.data(), static_cast<int>(sText.size())).toDouble();
    return std::isnan(value) ? 0.0 : value;
}

int JSONNode::IntOfNumber() const {
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(AsNumber(), least, most));
}

std::string JSONNode::AsText() const {
    switch (m_element.type()) {
        case simdjson::dom::element_type::INT64:
            return std::to_string(int64_t(m_element));
        case simdjson::dom::element_type::UINT64:
            return std::to_string(uint64_t(m_element));
        case simdjson::dom::element_type::DOUBLE:
            return QString::number(double(m_element), 'g', QLocale::FloatingPointShortest).toStdString();
        default:
            return std::string(StringText());
    }
}

std::string_view JSONNode::StringText() const {
    std::string_view sText;
    if (m_element.get(sText) != simdjson::SUCCESS) {
        return {};
    }
    return sText.substr(0, sText.find('\0'));
}

JSONDocument::JSONDocument(const QByteArray& text) : m_pParser(std::move(SpareParser())) {
    if (m_pParser == nullptr) {
        m_pParser = std::make_unique<simdjson::dom::parser>();
        // It keeps the depth when it grows.
        if (m_pParser->allocate(64, MaxDepth) != simdjson::SUCCESS) {
            throw std::invalid_argument("no memory to parse with");
        }
    }
    const QByteArray bytes = QByteArray::fromRawData(text.constData(), TextSize(text));
    simdjson::error_code error = Parse(bytes);
    if (error == simdjson::UTF8_ERROR) {
        error = Parse(QString::fromUtf8(bytes).toUtf8());
    }
    if (error != simdjson::SUCCESS) {
        throw std::invalid_argument(simdjson::error_message(error));
    }
}

JSONDocument::~JSONDocument() {
    if (m_pParser->capacity() <= MaxSpare) {
        SpareParser() = std::move(m_pParser);
    }
}

simdjson::error_code JSONDocument::Parse(const QByteArray& text) {
    return m_pParser->parse(text.constData(), static_cast<std::size_t>(text.size())).get(m_root);
}
