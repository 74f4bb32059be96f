#include "fuzz/check.hpp"

#include "Wendril/client.hpp"
#include "Wendril/fields.hpp"
#include "Wendril/text.hpp"
#include "simulator/requests.hpp"

#include <algorithm>

using namespace Wendril;

namespace {

using Fuzz::check;

std::vector<Frame> framesOf(ByteView stream) { return FrameParser().feed(stream); }

// However the line cuts a stream, its frames are the same; each of them encodes to bytes that
// stand in it.
void parse(ByteView stream) {
    const std::vector<Frame> whole = framesOf(stream);
    for (const std::size_t piece : {1, 7, 64}) {
        FrameParser parser;
        std::vector<Frame> frames;
        for (std::size_t at = 0; at < stream.size(); at += piece)
            parser.feed(stream.subspan(at, std::min(piece, stream.size() - at)),
                        [&frames](Frame& frame) { frames.push_back(std::move(frame)); });
        check(frames == whole);
    }
    for (const Frame& frame : whole) {
        check(frame.payload.size() <= std::size_t{4} * FrameCodec::maxWords);
        const std::vector<Frame> again = framesOf(FrameCodec::encode(frame, false, {}));
        check(again.size() == 1 && again.front() == frame);
    }
}

void decode(ByteView payload) {
    DeviceInfo::parse(payload);
    const std::string text = fieldText(payload);
    check(fieldText(ByteView(reinterpret_cast<const std::uint8_t*>(text.data()), text.size())) == text);
    for (const auto& [kind, name] : moduleKindNames) {
        const auto value = ModuleValue::decode(kind, payload);
        if (!value) continue;
        fieldsText(*value);
        check(ModuleValue::decode(kind, value->encoded()).has_value());
    }
}

// The other end of the line: the host may be broken too.
void serve(ByteView stream) {
    Simulator::RequestReader reader;
    const auto reading = reader.feed(stream);
    for (const Frame& request : reading.requests) {
        Simulator::faultOf(request);
        Simulator::meaningOf(request, true);
        Simulator::meaningOf(request, false);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView bytes(data, size);
    parse(bytes);
    decode(bytes);
    for (const Frame& frame : framesOf(bytes))
        decode(frame.payload);
    serve(bytes);
    return 0;
}
