#include "writer/patch/deflated_text.h"

#include "filters/deflate.h"
#include "writer/patch/text_sink.h"

#include <span>

namespace corvane {

std::string deflated(std::string_view text) {
    TextSink sink;
    Chain chain(&sink);
    chain.link(setupDeflate());
    writeFilter(*chain.top(), std::as_bytes(std::span(text)));
    chain.unlink();
    return sink.take();
}

} // namespace corvane
