#include "platform/linux/measurements/pipewire_media.h"

#include <list>
#include <memory>
#include <pipewire/pipewire.h>

namespace norvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

std::string_view property(const spa_dict* properties, const char* key) {
    const char* value = properties ? spa_dict_lookup(properties, key) : nullptr;
    return value ? value : std::string_view();
}

/// One connection, for the time of one look.
class Look {
public:
    Look() : loop_(pw_main_loop_new(nullptr), pw_main_loop_destroy) {
        if (loop_)
            context_.reset(pw_context_new(pw_main_loop_get_loop(loop_.get()), nullptr, 0));
        if (context_)
            core_.reset(pw_context_connect(context_.get(), nullptr, 0));
    }
    ~Look() {
        for (Node& node : nodes_)
            pw_proxy_destroy(node.proxy);
        if (registry_)
            pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
    Look(const Look&) = delete;
    Look& operator=(const Look&) = delete;

    MediaUse take(SteadyClock::time_point end) {
        if (!core_)
            return {};
        coreEvents_.version = PW_VERSION_CORE_EVENTS;
        coreEvents_.done = [](void* look, uint32_t, int) { static_cast<Look*>(look)->roundTripEnded(); };
        coreEvents_.error = [](void* look, uint32_t id, int, int, const char*) {
            static_cast<Look*>(look)->failed_ |= id == PW_ID_CORE; // a node may vanish at any time
        };
        pw_core_add_listener(core_.get(), &coreListener_, &coreEvents_, this);
        registryEvents_.version = PW_VERSION_REGISTRY_EVENTS;
        registryEvents_.global = [](void* look, uint32_t id, uint32_t, const char* type, uint32_t,
                                    const spa_dict* properties) {
            if (std::string_view(type) == PW_TYPE_INTERFACE_Node)
                static_cast<Look*>(look)->bind(id, properties);
        };
        registry_ = pw_core_get_registry(core_.get(), PW_VERSION_REGISTRY, 0);
        pw_registry_add_listener(registry_, &registryListener_, &registryEvents_, this);
        pw_core_sync(core_.get(), PW_ID_CORE, 0);
        return runUntil(end) ? use_ : MediaUse{};
    }

private:
    struct Node {
        Look* look;
        pw_proxy* proxy;
        spa_hook listener{};
        pw_node_events events{};
    };

    /// The first round trip brought all nodes, the second what each of them does.
    void roundTripEnded() {
        if (++roundTrips_ == 1)
            pw_core_sync(core_.get(), PW_ID_CORE, 0);
    }

    void bind(uint32_t id, const spa_dict* properties) {
        const std::string_view mediaClass = property(properties, PW_KEY_MEDIA_CLASS);
        if (useOf({mediaClass, {}, {}}) == MediaUse{})
            return;
        void* proxy = pw_registry_bind(registry_, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0);
        if (!proxy)
            return;
        Node& node = nodes_.emplace_back(Node{this, static_cast<pw_proxy*>(proxy)});
        node.events.version = PW_VERSION_NODE_EVENTS;
        node.events.info = [](void* told, const pw_node_info* info) {
            static_cast<Node*>(told)->look->count(*info);
        };
        pw_node_add_listener(reinterpret_cast<pw_node*>(proxy), &node.listener, &node.events, &node);
    }

    void count(const pw_node_info& info) {
        if (info.state != PW_NODE_STATE_RUNNING)
            return;
        const MediaUse use =
            useOf({property(info.props, PW_KEY_MEDIA_CLASS), property(info.props, PW_KEY_MEDIA_ROLE),
                   property(info.props, PW_KEY_DEVICE_API)});
        use_.camera |= use.camera;
        use_.microphone |= use.microphone;
        use_.screen |= use.screen;
    }

    /// False: the server failed or is late.
    bool runUntil(SteadyClock::time_point end) {
        constexpr int allRoundTrips = 2;
        pw_loop* loop = pw_main_loop_get_loop(loop_.get());
        pw_loop_enter(loop);
        while (roundTrips_ < allRoundTrips && !failed_) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - SteadyClock::now());
            if (left.count() <= 0 || pw_loop_iterate(loop, static_cast<int>(left.count())) < 0)
                break;
        }
        pw_loop_leave(loop);
        return roundTrips_ == allRoundTrips;
    }

    std::unique_ptr<pw_main_loop, decltype(&pw_main_loop_destroy)> loop_;
    std::unique_ptr<pw_context, decltype(&pw_context_destroy)> context_{nullptr, pw_context_destroy};
    std::unique_ptr<pw_core, decltype(&pw_core_disconnect)> core_{nullptr, pw_core_disconnect};
    spa_hook coreListener_{};
    pw_core_events coreEvents_{};
    pw_registry* registry_ = nullptr;
    spa_hook registryListener_{};
    pw_registry_events registryEvents_{};
    std::list<Node> nodes_; // the server's library keeps their addresses
    int roundTrips_ = 0;
    bool failed_ = false;
    MediaUse use_;
};

} // namespace

MediaUse useOf(const MediaNode& node) {
    MediaUse use;
    if (node.mediaClass == "Video/Source") {
        // Some desktops offer the screen as a video source of its own.
        use.camera = node.mediaRole == "Camera" || node.deviceApi == "v4l2" || node.deviceApi == "libcamera";
        use.screen = !use.camera;
    } else if (node.mediaClass == "Stream/Output/Video") {
        use.screen = true;
    } else {
        use.microphone = node.mediaClass == "Audio/Source" || node.mediaClass == "Audio/Source/Virtual" ||
                         node.mediaClass == "Audio/Duplex";
    }
    return use;
}

MediaUse pipeWireMediaUse(std::chrono::milliseconds limit) {
    const auto end = SteadyClock::now() + limit;
    pw_init(nullptr, nullptr);
    const MediaUse use = Look().take(end);
    pw_deinit();
    return use;
}

} // namespace norvane
