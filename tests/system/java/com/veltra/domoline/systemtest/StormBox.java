package com.veltra.domoline.systemtest;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.TreeMap;
import java.util.function.UnaryOperator;

/** The box in a storm: rights and accounts, the web's right, the lights, voice events. */
final class StormBox {
    private StormBox() {}

    static List<StormPart> parts() {
        return List.of(new Accounts(AccountService.FTP), new Accounts(AccountService.SAMBA),
                new Web(), new Lights(), new VoiceEvents());
    }

    private static int flag(JsonElement element, String member) {
        return element.getAsJsonObject().get(member).getAsBoolean() ? 1 : 0;
    }

    private static final class Accounts extends StormPart {
        private static final int kUsers = 12;

        private final AccountService service;
        private final String section;
        private final String user;
        private final String access;
        private final String state;

        Accounts(AccountService service) {
            super(service.name() + " ");
            this.service = service;
            section = service.name().toLowerCase(Locale.ROOT);
            user = prefix + "user ";
            access = prefix + "access";
            state = prefix + "state";
        }

        @Override
        void act() {
            if (oneIn(5)) {
                setRight();
                return;
            }
            if (rarely(25, Box.kRightConfig, service.deleteAllMethod)
                    && model().isAllCertain(user)) {
                Effect all = new Effect();
                model().keys(user, true).forEach(key -> all.and(key, HomeModel.kAbsent));
                holdBackUnless(change("deleting all accounts", all,
                        () -> isDone("deleteAll", service.deleteAll())));
                return;
            }
            String name = "user-" + roll(kUsers);
            String key = user + name;
            if (!isCertain(key)) {
                return;
            }
            boolean bThere = !model().value(key).equals(HomeModel.kAbsent);
            if (oneIn(8)) {
                refused("an account that is there already, or isn't", -1,
                        () -> bThere ? service.add(name, "other") : service.delete(name));
            } else if (bThere) {
                change("deleting an account", key, HomeModel.kAbsent, () -> service.delete(name));
            } else {
                change("adding an account", key, HomeModel.kPresent,
                        () -> service.add(name, "secret"));
            }
        }

        private void setRight() {
            int iRight = roll(4);
            int iValue = roll(100);
            Effect effect = Effect.set(state, (iRight == 0 ? 0 : 1) + " " + iValue);
            // Off: the flags stay as they were.
            if (iRight != 0) {
                effect.and(access, flags(iRight));
            }
            change("setting the right", effect,
                    () -> isDone("the right", service.set(iRight, iValue)));
        }

        private static String flags(int iRight) {
            return (iRight & 1) + " " + (iRight >> 1);
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            JsonElement its = home.get(section);
            rows.put(access, flag(its, "lanAccess") + " " + flag(its, "wanAccess"));
            rows.put(state, flag(its, "enabled") + " " + text(its, "value"));
            for (JsonElement account : its.getAsJsonObject().getAsJsonArray("accounts")) {
                put(rows, user + text(account, "user"), HomeModel.kPresent);
            }
            return rows;
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            JsonObject info = answer(service.info());
            rows.put(access, text(info, "LanAccess") + " " + text(info, "WanAccess"));
            rows.put(state, text(info, "Enable") + " " + text(info, "Value"));
            for (JsonElement account : info.getAsJsonArray("List")) {
                put(rows, user + text(account, "User"), HomeModel.kPresent);
            }
            return rows;
        }
    }

    private static final class Web extends StormPart {
        private static final int kMostUncertain = 8;
        private static final UnaryOperator<String> kOneMore =
                value -> String.valueOf(Integer.parseInt(value) + 1);

        private int iUncertain;

        Web() {
            super("web ");
        }

        @Override
        void act() {
            if (oneIn(2)) {
                int iRight = roll(4);
                change("setHTTPRight", prefix + "right", (iRight & 1) + " " + (iRight >> 1),
                        () -> Natives.number(Box.kRightConfig, "setHTTPRight", iRight));
            } else if (isCertain(prefix + "changes") || iUncertain++ < kMostUncertain) {
                // The gateway counts them. What comes late is counted late, so that the order of
                // two changes makes no difference.
                change("setHTTPUserPassword", Effect.map(prefix + "changes", kOneMore),
                        ()
                                -> isDone("setHTTPUserPassword",
                                        Natives.number(Box.kRightConfig, "setHTTPUserPassword",
                                                "secret")));
            }
        }

        @Override
        void learn(JsonObject home) {
            iUncertain = 0;
        }

        @Override
        Map<String, String> held(JsonObject home) {
            JsonElement web = home.get("web");
            return Map.of(prefix + "right", flag(web, "lanAccess") + " " + flag(web, "wanAccess"),
                    prefix + "changes", text(web, "passwordChanges"));
        }

        @Override
        Map<String, String> told() {
            JsonObject info = answer(Natives.text(Box.kRights, "getHTTPRightInfo"));
            return Map.of(prefix + "right", text(info, "LanAccess") + " " + text(info, "WanAccess"),
                    prefix + "changes", text(info, "PasswordChanges"));
        }
    }

    private static final class Lights extends StormPart {
        Lights() {
            super("lights ");
        }

        @Override
        void act() {
            int iOn = roll(2);
            change("setLedSwitch", prefix + "on", iOn == 1 ? "true" : "false",
                    () -> Natives.number(Box.kLights, "setLedSwitch", iOn));
        }

        @Override
        Map<String, String> held(JsonObject home) {
            return Map.of(prefix + "on", text(home.get("leds"), "on"));
        }
    }

    private static final class VoiceEvents extends StormPart {
        private static final int kBundles = 20;
        private static final String[] kEvents = {"NOTIFY_VOICE_CALL_INFO"};

        VoiceEvents() {
            super("voice ");
        }

        @Override
        void act() {
            String bundle = "com.example.phone-" + roll(kBundles);
            String key = prefix + bundle;
            if (!isCertain(key)) {
                return;
            }
            // A failure is the platform's code or the process's, which is any but 0.
            if (model().value(key).equals(HomeModel.kAbsent)) {
                change("subscribing", Effect.set(key, HomeModel.kPresent),
                        ()
                                -> Natives.number(Box.kVoiceEvents, "getSubscribeVoIPEvent", bundle,
                                           kEvents)
                                == 0);
            } else {
                change("unsubscribing", Effect.set(key, HomeModel.kAbsent),
                        ()
                                -> Natives.number(Box.kVoiceEvents, "getUnSubscribeVoIPEvent",
                                           bundle, null)
                                == 0);
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement entry : home.getAsJsonArray("voiceEvents")) {
                put(rows, prefix + text(entry, "bundle"), HomeModel.kPresent);
            }
            return rows;
        }
    }
}
