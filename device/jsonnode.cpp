#include "device/jsonnode.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

double JSONNode::AsNumber() const {
    switch (m_element.type()) {
        case simdjson::dom::element_type::INT64:
            return static_cast<double>(int64_t(m_element));
        case simdjson::dom::element_type::UINT64:
            return static_cast<double>(uint64_t(m_element));
        case simdjson::dom::element_type::DOUBLE:
            return double(m_element);
        case simdjson::dom::element_type::BOOL:
            return bool(m_element) ? 1.0 : 0.0;
        case simdjson::dom::element_type::STRING: {
            const std::string_view sText = AsText();
            const double value =
                QByteArray::fromRawData(sText.data(), static_cast<int>(sText.size())).toDouble();
            return std::isnan(value) ? 0.0 : value;
        }
        default:
            return 0.0;
    }
}

int JSONNode::AsInt() const {
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(AsNumber(), least, most));
}

bool JSONNode::AsBool() const {
    return AsNumber() != 0.0;
}

std::string_view JSONNode::AsText() const {
    std::string_view sText;
    if (m_element.get(sText) != simdjson::SUCCESS) {
        return {};
    }
    return sText.substr(0, sText.find('\0'));
}

JSONDocument::JSONDocument(const QByteArray& text) {
    const int nEnd = text.indexOf('\0');
    const QByteArray bytes = nEnd < 0 ? text : QByteArray::fromRawData(text.constData(), nEnd);
    simdjson::error_code error = Parse(bytes);
    if (error == simdjson::UTF8_ERROR) {
        error = Parse(QString::fromUtf8(bytes).toUtf8());
    }
    if (error != simdjson::SUCCESS) {
        throw std::invalid_argument(simdjson::error_message(error));
    }
}

simdjson::error_code JSONDocument::Parse(const QByteArray& text) {
    const auto nSize = static_cast<std::size_t>(text.size());
    const simdjson::error_code error = m_parser.allocate(std::max<std::size_t>(nSize, 64), MaxDepth);
    if (error != simdjson::SUCCESS) {
        return error;
    }
    return m_parser.parse(text.constData(), nSize).get(m_root);
}
