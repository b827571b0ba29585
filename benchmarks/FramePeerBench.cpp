// Frames of the same size by what others wrote, with nothing between the maker of the frames and their memory.
#include <arv.h>
#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include <memory>
#include <string>
#include <vector>

#include "FrameBatch.h"

namespace {

using bench::framesOf;
using bench::kBuffers;

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Aravis fills buffers from its fake camera, unhurried by the camera's frame rate.
void peerFakeCamera(benchmark::State& state) {
    const auto side = static_cast<guint32>(state.range(0));
    const std::unique_ptr<ArvFakeCamera, Release> camera(arv_fake_camera_new("frames"));
    arv_fake_camera_write_register(camera.get(), ARV_FAKE_CAMERA_REGISTER_WIDTH, side);
    arv_fake_camera_write_register(camera.get(), ARV_FAKE_CAMERA_REGISTER_HEIGHT, side);
    const size_t payload = arv_fake_camera_get_payload(camera.get());
    if (payload != size_t{side} * side) {
        state.SkipWithError("the fake camera has another size");
        return;
    }
    std::vector<std::unique_ptr<ArvBuffer, Release>> buffers;
    for (frameindex_t i = 0; i < kBuffers; ++i) buffers.emplace_back(arv_buffer_new_allocate(payload));
    const frameindex_t frames = framesOf(static_cast<int>(side));
    for (auto _ : state) {
        for (frameindex_t frame = 0; frame < frames; ++frame) {
            ArvBuffer* const buffer = buffers[static_cast<size_t>(frame % kBuffers)].get();
            arv_fake_camera_fill_buffer(camera.get(), buffer, nullptr);
            if (arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS) state.SkipWithError("no frame");
        }
    }
    bench::countFrames(state, static_cast<int>(side));
}
BENCHMARK(peerFakeCamera)->Apply(bench::overSizes);

/// GStreamer makes its flying ball, unhurried too.
void peerTestSource(benchmark::State& state) {
    const auto side = static_cast<int>(state.range(0));
    const std::string size = std::to_string(side);
    const std::string text = "videotestsrc num-buffers=" + std::to_string(framesOf(side)) +
                             " pattern=ball ! video/x-raw,format=GRAY8,framerate=100/1,width=" + size +
                             ",height=" + size + " ! fakesink sync=false";
    for (auto _ : state) {
        const std::unique_ptr<GstElement, Release> pipeline(gst_parse_launch(text.c_str(), nullptr));
        if (pipeline == nullptr) {
            state.SkipWithError("there is no videotestsrc");
            return;
        }
        gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
        const std::unique_ptr<GstBus, Release> bus(gst_element_get_bus(pipeline.get()));
        constexpr auto kEnd = static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
        GstMessage* const message = gst_bus_timed_pop_filtered(bus.get(), GST_CLOCK_TIME_NONE, kEnd);
        if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_EOS) state.SkipWithError("the frames did not come");
        gst_message_unref(message);
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    }
    bench::countFrames(state, side);
}
BENCHMARK(peerTestSource)->Apply(bench::overSizes);

}  // namespace
