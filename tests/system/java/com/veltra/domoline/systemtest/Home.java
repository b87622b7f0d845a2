package com.veltra.domoline.systemtest;

import com.google.gson.Gson;
import com.google.gson.GsonBuilder;
import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Consumer;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import java.util.stream.StreamSupport;

/**
 * What the gateway's processes hold, asked of them beside the library; and homes of other sizes.
 */
final class Home {
    private static final Gson kGson = new GsonBuilder().disableHtmlEscaping().create();

    private final JsonObject home;

    private Home(JsonObject home) {
        this.home = home;
    }

    /** The home as it is now. */
    static Home now() {
        return new Home(kGson.fromJson(Gateway.ctl("get"), JsonObject.class));
    }

    /** All of it. */
    JsonObject json() {
        return home;
    }

    /**
     * Tells a list of the home.
     *
     * @param path where it is: names with dots between them
     * @param members what to tell of each element
     * @return a text for each element: its members' values with a blank between them
     */
    List<String> list(String path, String... members) {
        JsonElement list = home;
        for (String name : path.split("\\.")) {
            list = list.getAsJsonObject().get(name);
        }
        List<String> rows = new ArrayList<>();
        for (JsonElement element : list.getAsJsonArray()) {
            JsonObject row = element.getAsJsonObject();
            rows.add(Stream.of(members)
                             .map(member -> row.get(member).getAsString())
                             .collect(Collectors.joining(" ")));
        }
        return rows;
    }

    /** The MAC filter's wired table. */
    List<String> wired() {
        return list("macFilter.lan", "mac");
    }

    /** The MAC filter's wireless table. */
    List<String> wireless() {
        return list("macFilter.wlan", "ssid", "mac");
    }

    /** The attach-control records: internet right, storage right, upstream and downstream limit. */
    List<String> records() {
        return list(
                "attachControl", "mac", "internetRight", "storageRight", "upLimit", "downLimit");
    }

    List<String> mappings() {
        return list("portMapping", "id", "wanIndex", "enabled", "externalPort", "internalPort",
                "protocol", "client");
    }

    List<String> connections() {
        return list("wan", "index", "name");
    }

    /** The devices that have connections: device and connection device. */
    List<String> connectionDevices() {
        return list("wanDevices", "deviceInstance", "connDeviceInstance");
    }

    List<String> ipv4Routes() {
        return list("routes.ipv4", "id", "destination", "mask", "gateway", "lanInterface",
                "connection");
    }

    List<String> ipv6Routes() {
        return list("routes.ipv6", "id", "prefix", "nextHop", "interface");
    }

    /** The LAN ports and what they are bound to. */
    List<String> ports() {
        return list("lanPorts", "port", "mode", "bind");
    }

    /** The SSIDs that were ever bound. */
    List<String> ssids() {
        return list("ssidBindings", "ssid", "mode", "bind");
    }

    /** What a connection is set to, as JSON. */
    String settings(int iWan) {
        for (JsonElement wan : home.getAsJsonArray("wan")) {
            if (wan.getAsJsonObject().get("index").getAsInt() == iWan) {
                return kGson.toJson(wan.getAsJsonObject().get("settings"));
            }
        }
        throw new AssertionError(String.format("no connection 0x%x", iWan));
    }

    /** Ends the gateway and starts it with the home that is now, but changed. */
    static void startOverWith(Consumer<JsonObject> change) {
        JsonObject home = now().home;
        change.accept(home);
        try {
            Path file = Files.createTempFile("home-", ".json");
            try {
                Gateway.startOver("--home", Files.writeString(file, kGson.toJson(home)).toString());
            } finally {
                Files.delete(file);
            }
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** Replaces the hosts of a home by those of {@link Lan#manyMac}. */
    static void putHosts(JsonObject home, int iCount) {
        JsonArray hosts = home.getAsJsonArray("hosts");
        JsonObject model = hosts.get(0).getAsJsonObject();
        JsonArray many = new JsonArray();
        for (int i = 0; i < iCount; i++) {
            JsonObject host = model.deepCopy();
            host.addProperty("mac", Lan.manyMac(i));
            host.addProperty("ip", "10.0." + (i >> 8) + "." + (i & 0xFF));
            host.addProperty("name", "host-" + i);
            host.addProperty("class", i % 2 == 0 ? "PC" : "PHONE");
            host.addProperty("rxBytes", 1000L * i);
            many.add(host);
        }
        home.add("hosts", many);
    }

    /** An answer that is an object. */
    static JsonObject object(String answer) {
        return kGson.fromJson(answer, JsonObject.class);
    }

    /** The values of one member in the list of an answer. */
    static List<String> answered(String answer, String member) {
        return StreamSupport.stream(object(answer).getAsJsonArray("List").spliterator(), false)
                .map(element -> element.getAsJsonObject().get(member).getAsString())
                .collect(Collectors.toList());
    }
}
