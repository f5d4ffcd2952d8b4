#include "benchmarks/SamplePage.h"

#include "benchmarks/Numbers.h"

#include <nox/util/Utilities.h>

#include <iterator>
#include <utility>

namespace {

struct Kind {
    const char *code;
    const char *note;
    const char *extension;
    const char *videoCodec;
    const char *audioCodec;
    int width;
    int height;
};

constexpr Kind kinds[] = {
    {"137", "1080p, DASH video", "mp4", "avc1.640028", "none", 1920, 1080},
    {"248", "1080p", "webm", "vp09.00.40.08", "none", 1920, 1080},
    {"399", "1080p", "mp4", "av01.0.08M.08", "none", 1920, 1080},
    {"22", "720p", "mp4", "avc1.64001F", "mp4a.40.2", 1280, 720},
    {"136", "720p", "mp4", "avc1.4d401f", "none", 1280, 720},
    {"247", "720p", "webm", "vp09.00.31.08", "none", 1280, 720},
    {"135", "480p", "mp4", "avc1.4d401e", "none", 854, 480},
    {"18", "360p", "mp4", "avc1.42001E", "mp4a.40.2", 640, 360},
    {"140", "medium, DASH audio", "m4a", "none", "mp4a.40.2", 0, 0},
    {"251", "medium", "webm", "none", "opus", 0, 0},
};

// "Подробнее", "日本語", "é" and an emoji in two halves, as the tool writes what is not ASCII.
constexpr const char *escapedWords[] = {R"(\u041f\u043e\u0434\u0440\u043e\u0431\u043d\u0435\u0435)",
                                        R"(\u65e5\u672c\u8a9e)", R"(caf\u00e9)", R"(\ud83c\udfac)",
                                        R"(\u0627\u0644\u0639\u0631\u0628\u064a\u0629)"};

class Writer
{
public:
    QByteArray page(int formats, int captionLanguages, int paragraphs, bool isFull)
    {
        m_json.reserve(formats * (isFull ? 4200 : 800) + captionLanguages * 4000 + paragraphs * 400 + 4000);
        m_json += R"({"id": "dQw4w9WgXcQ", "title": "Open the )";
        m_json += escapedWords[0];
        m_json += R"(/bar? Tom &#38; Jerry&#39;s \"caf\u00e9\" \ud83c\udfac", "formats": [)";
        for (int i = 0; i < formats; ++i) {
            m_json += i == 0 ? "" : ", ";
            writeFormat(kinds[static_cast<size_t>(i) % std::size(kinds)], i, isFull);
        }
        m_json += R"(], "thumbnail": "https://i.example.org/vi/dQw4w9WgXcQ/maxresdefault.jpg", "description": ")";
        writeDescription(paragraphs);
        m_json += R"(", "duration": 212, "automatic_captions": {)";
        writeCaptions(captionLanguages);
        m_json += R"(}, "view_count": 1418283491, "webpage_url": "https://www.example.org/watch?v=dQw4w9WgXcQ"})";
        m_json += '\n';
        return std::move(m_json);
    }

private:
    // A long query of parameters and a signature.
    void writeUrl(int length)
    {
        constexpr char digits[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-_";
        m_json += "https://rr3---sn-4g5ednsl.example.org/videoplayback?expire=1710000000&ei=";
        for (int i = 0; i < length; ++i) {
            if (i % 40 == 39)
                m_json += "&p%2C=";
            m_json += digits[m_numbers.below(64)];
        }
    }

    void writeFormat(const Kind &kind, int number, bool isFull)
    {
        m_json +=
            R"({"asr": null, "filesize": )" + QByteArray::number(static_cast<qulonglong>(m_numbers.below(500'000'000)));
        m_json += R"(, "format_id": ")" + QByteArray(kind.code) + '-' + QByteArray::number(number);
        m_json += R"(", "format_note": ")" + QByteArray(kind.note) + R"(", "source_preference": -1, "fps": 25)";
        if (kind.height > 0) {
            m_json += R"(, "height": )" + QByteArray::number(kind.height) + R"(, "width": )"
                + QByteArray::number(kind.width) + R"(, "resolution": ")" + QByteArray::number(kind.width) + 'x'
                + QByteArray::number(kind.height) + '"';
        } else {
            m_json += R"(, "height": null, "width": null, "resolution": "audio only", "abr": 129.478)";
        }
        m_json += R"(, "quality": 9.0, "has_drm": false, "tbr": 4426.325, "url": ")";
        writeUrl(isFull ? 1000 : 280);
        m_json += R"(", "language": null, "ext": ")" + QByteArray(kind.extension) + R"(", "vcodec": ")"
            + QByteArray(kind.videoCodec) + R"(", "acodec": ")" + QByteArray(kind.audioCodec) + '"';
        if (isFull)
            writeTransport();
        m_json += R"(, "protocol": "https", "dynamic_range": "SDR", "container": "mp4_dash"})";
    }

    void writeTransport()
    {
        m_json += R"(, "manifest_url": ")";
        writeUrl(800);
        m_json += R"(", "http_headers": {"User-Agent": "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36", )";
        m_json += R"("Accept": "text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8", )";
        m_json += R"("Accept-Language": "en-us,en;q=0.5", "Sec-Fetch-Mode": "navigate"}, "fragments": [{"url": ")";
        writeUrl(500);
        m_json += R"(", "duration": 5.333}])";
    }

    void writeDescription(int paragraphs)
    {
        for (int i = 0; i < paragraphs; ++i) {
            for (const char *word : escapedWords) {
                m_json += word;
                m_json += " https://example.org/link ";
            }
            m_json += R"(Tom &#38; Jerry&#39;s \"best of\"\n\n)";
        }
    }

    void writeCaptions(int languages)
    {
        for (int i = 0; i < languages; ++i) {
            m_json += i == 0 ? "\"l" : ", \"l";
            m_json += QByteArray::number(i) + R"(": [)";
            for (int form = 0; form < 6; ++form) {
                m_json += form == 0 ? R"({"ext": "json3", "url": ")" : R"(, {"ext": "vtt", "url": ")";
                writeUrl(360);
                m_json += R"(", "name": ")";
                m_json += escapedWords[static_cast<size_t>(i) % std::size(escapedWords)];
                m_json += "\"}";
            }
            m_json += ']';
        }
    }

    QByteArray m_json;
    Numbers m_numbers;
};

} // namespace

SamplePage::SamplePage(QByteArray bytes)
    : m_bytes(std::move(bytes))
{
}

SamplePage SamplePage::ordinary()
{
    return SamplePage(Writer().page(200, 120, 60, true));
}

SamplePage SamplePage::unusual()
{
    return SamplePage(Writer().page(200, 120, 60, true) + "WARNING: something else\n");
}

SamplePage SamplePage::withFormats(int formats)
{
    return SamplePage(Writer().page(formats, 0, 4, false));
}

const QByteArray &SamplePage::bytes() const
{
    return m_bytes;
}

QString SamplePage::text() const
{
    return QString::fromUtf8(m_bytes);
}

QByteArray SamplePage::preparedBytes() const
{
    using Nox::Utilities;
    return Utilities::convertHttpSpecificChar2(Utilities::convertHttpSpecificChar(text())).toUtf8();
}
