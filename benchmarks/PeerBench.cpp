// The same work with a camera that others wrote: Aravis and its fake camera, in this process.
#include <arv.h>
#include <benchmark/benchmark.h>

#include <memory>

namespace {

struct Release {
    void operator()(ArvDevice* device) const { g_object_unref(device); }
};

/// \return the fake camera, with its values checked against their range as the applet checks them; or null, and the
///         benchmark ends
std::unique_ptr<ArvDevice, Release> openFakeCamera(benchmark::State& state) {
    GError* error = nullptr;
    std::unique_ptr<ArvDevice, Release> device(arv_open_device("Fake_1", &error));
    if (device == nullptr) {
        state.SkipWithError("the fake camera does not open");
        g_clear_error(&error);
        return nullptr;
    }
    arv_device_set_range_check_policy(device.get(), ARV_RANGE_CHECK_POLICY_ENABLE);
    return device;
}

void endOnError(benchmark::State& state, GError* error) {
    if (error == nullptr) return;
    state.SkipWithError("the fake camera refused");
    g_error_free(error);
}

void peerReadInteger(benchmark::State& state) {
    const auto device = openFakeCamera(state);
    for (auto _ : state) {
        GError* error = nullptr;
        benchmark::DoNotOptimize(arv_device_get_integer_feature_value(device.get(), "Width", &error));
        endOnError(state, error);
    }
}
BENCHMARK(peerReadInteger);

void peerWriteInteger(benchmark::State& state) {
    const auto device = openFakeCamera(state);
    gint64 width = 640;
    for (auto _ : state) {
        GError* error = nullptr;
        arv_device_set_integer_feature_value(device.get(), "Width", width, &error);
        endOnError(state, error);
        width = width == 640 ? 704 : 640;
    }
}
BENCHMARK(peerWriteInteger);

void peerOpenReadFree(benchmark::State& state) {
    for (auto _ : state) {
        const auto device = openFakeCamera(state);
        if (device == nullptr) break;
        GError* error = nullptr;
        benchmark::DoNotOptimize(arv_device_get_integer_feature_value(device.get(), "Width", &error));
        endOnError(state, error);
    }
}
BENCHMARK(peerOpenReadFree)->Unit(benchmark::kMillisecond);

}  // namespace
