package com.veltra.domoline.bench;

/** One call of a peer, made again and again. */
@FunctionalInterface
interface Call {
    /**
     * Makes the call once.
     *
     * @return what came back, a text or a number
     * @throws Exception if nothing came back
     */
    Object once() throws Exception;
}
