package com.veltra.domoline.bench;

import java.io.EOFException;
import java.io.IOException;
import java.net.StandardProtocolFamily;
import java.net.UnixDomainSocketAddress;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.channels.SocketChannel;
import java.nio.charset.StandardCharsets;
import java.util.zip.DataFormatException;
import java.util.zip.Inflater;

/**
 * Plain Java over a Unix-domain socket: a word of what is asked for and a word of argument go
 * there, a word of length and as many bytes come back.
 */
final class SocketPeer {
    private static final int kMost = 1 << 17;

    private final SocketChannel channel;
    private final ByteBuffer request = ByteBuffer.allocateDirect(8).order(ByteOrder.nativeOrder());
    private final ByteBuffer reply =
            ByteBuffer.allocateDirect(kMost).order(ByteOrder.nativeOrder());

    private SocketPeer(SocketChannel channel) {
        this.channel = channel;
    }

    static SocketPeer connect(String path) throws IOException {
        SocketChannel channel = SocketChannel.open(StandardProtocolFamily.UNIX);
        channel.connect(UnixDomainSocketAddress.of(path));
        return new SocketPeer(channel);
    }

    Call call(Work work) {
        switch (work) {
            case UP_TIME:
                return () -> {
                    ask(Work.UP_TIME.ordinal(), 0);
                    return reply.getInt(Integer.BYTES);
                };
            case WAN_STATUS:
                return () -> text(Work.WAN_STATUS.ordinal(), Work.kWan);
            default:
                return () -> text(work.ordinal(), 0);
        }
    }

    /** The long text as it is after the last of {@link Work}: compressed as a bulk block is. */
    Call compressedCall() {
        Inflater inflater = new Inflater();
        byte[] plain = new byte[kMost];
        return () -> {
            int length = ask(Work.values().length, 0);
            return inflate(inflater, reply.slice(Integer.BYTES, length), plain);
        };
    }

    private static String inflate(Inflater inflater, ByteBuffer compressed, byte[] plain)
            throws DataFormatException {
        inflater.reset();
        inflater.setInput(compressed);
        int length = inflater.inflate(plain);
        return new String(plain, 0, length, StandardCharsets.UTF_8);
    }

    private String text(int work, int argument) throws IOException {
        byte[] bytes = new byte[ask(work, argument)];
        reply.get(Integer.BYTES, bytes);
        return new String(bytes, StandardCharsets.UTF_8);
    }

    /** The reply is in the buffer, behind its length, which is the result. */
    private int ask(int work, int argument) throws IOException {
        request.clear();
        request.putInt(work).putInt(argument).flip();
        while (request.hasRemaining()) {
            channel.write(request);
        }
        reply.clear();
        int length = kMost;
        while (reply.position() < Integer.BYTES || reply.position() < Integer.BYTES + length) {
            if (channel.read(reply) < 0) {
                throw new EOFException("the process at the other end of the socket has ended");
            }
            if (reply.position() >= Integer.BYTES) {
                length = reply.getInt(0);
            }
        }
        return length;
    }
}
