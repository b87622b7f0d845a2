package com.veltra.domoline.bench;

/** What is asked for. The names are those that the programs use. */
enum Work {
    /** A number, without an argument. */
    UP_TIME,
    /** A short text, without an argument. */
    MAC,
    /** A text, for a number. */
    WAN_STATUS,
    /** A text of 64 KiB, without an argument. */
    HOSTS;

    /** The WAN connection that is asked about. */
    static final int kWan = 0x10101001;
}
