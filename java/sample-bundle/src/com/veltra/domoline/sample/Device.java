package com.veltra.domoline.sample;

import com.google.gson.annotations.SerializedName;

/** What the gateway says of itself. */
final class Device extends Answer {
    @SerializedName("Vendor") private String vendor;

    @SerializedName("ProductCLass") // so it is spelt
    private String model;

    /**
     * Reads the answer of {@code getDeviceInfo}.
     *
     * @return the device, or {@code null} when the answer is a failure
     */
    static Device read(String answer) {
        return read(answer, Device.class);
    }

    @Override
    public String toString() {
        return printable(vendor) + " " + printable(model);
    }
}
