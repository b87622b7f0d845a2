package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Who on the LAN may do what: the gateway's MAC filter, and the list of hosts that are barred from
 * its storage.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each makes several requests to the gateway's processes, one for each
 * entry that it reads or changes, and blocks the calling thread until all are answered, 5 seconds
 * at most for each. A process that is not running makes them fail without waiting. No method throws
 * because of the gateway's state.
 *
 * <p>The filter has one mode. As a black list it refuses the hosts on it, as a trust list it admits
 * no others. {@link LANHostsInfoQueryServiceJNI#getMacFilterMode()} tells the mode. The list itself
 * can be changed while the filter is off. A host on it is filtered on the wired ports and on every
 * wireless network that the gateway does not exempt. A change that fails half way is undone; what
 * two callers change at the same time can mix.
 *
 * <p>MAC addresses are texts, of which 31 bytes each are used, and compared without regard to case.
 * The methods of the MAC filter leave out the {@code null} and the empty elements of an array. The
 * two methods of the storage leave out those that are {@code null} only: beside an element with
 * text, an empty one counts as a host whose MAC address is empty. The longest arrays differ from
 * method to method; longer ones are refused without asking anybody.
 */
public class LanNetworkAccessConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LanNetworkAccessConfigServiceJNI() {}

    /**
     * Switches the MAC filter. Asks the process {@code gulm} what is set and, unless that is what
     * is wanted, the process {@code osgi_proxy} to change it, at most 5 seconds each.
     *
     * <p>Example: {@code setMacFilterMode(1)} switches the black list on and answers {@code 0}.
     *
     * <p>When {@code gulm} doesn't tell what is set, the change is made without a comparison, and
     * switching the filter off sets its mode to the black list.
     *
     * @param iMacFltPara 0 to switch the filter off, which keeps its mode; 1 for the black list, 2
     *     for the trust list, and on. Other numbers are passed on to the gateway, less 1
     * @return 0 when the filter is as wanted; -1 when {@code osgi_proxy} doesn't answer or refuses
     */
    public native int setMacFilterMode(int iMacFltPara);

    /**
     * Adds hosts to the black list. Asks the processes {@code gulm} and {@code app_m} for what is
     * set and {@code osgi_proxy} for each change, at most 5 seconds each.
     *
     * <p>Example answer: {@code 0}
     *
     * @param asMacs up to 8 MAC addresses; with {@code null}, or without any text in it, nothing is
     *     done
     * @return 0 when all were added or none was given; -1 when there are more than 8, when the
     *     filter's mode is not the black list, or when a process doesn't answer or refuses
     */
    public native int addLANHostToBlackList(String[] asMacs);

    /**
     * Takes hosts off the black list, or all hosts when no text is given. Asks the process {@code
     * gulm} for what is set and {@code osgi_proxy} for each change, at most 5 seconds each.
     *
     * <p>Example: {@code deleteLANHostFromBlackList(null)} empties the list and answers {@code 0}.
     *
     * @param asMacs up to 128 MAC addresses; one that is not on the list is no failure. {@code
     *     null}, and an array without any text in it, empty the list
     * @return 0 when the hosts are off the list, and also, with nothing done, when the filter's
     *     mode is not the black list; -1 when there are more than 128, when memory runs out before
     *     any of them is known, or when a process doesn't answer or refuses
     */
    public native int deleteLANHostFromBlackList(String[] asMacs);

    /**
     * Adds hosts to the trust list. Asks the processes {@code gulm} and {@code app_m} for what is
     * set and {@code osgi_proxy} for each change, at most 5 seconds each.
     *
     * <p>Example answer: {@code 0}
     *
     * @param asMacs up to 8 MAC addresses; with {@code null}, or without any text in it, nothing is
     *     done
     * @return 0 when all were added or none was given; -1 when there are more than 8, when the
     *     filter's mode is not the trust list, or when a process doesn't answer or refuses
     */
    public native int addLANHostToTrustList(String[] asMacs);

    /**
     * Takes hosts off the trust list. Asks the process {@code gulm} for what is set and {@code
     * osgi_proxy} for each change, at most 5 seconds each. There is no call that empties the list.
     *
     * <p>Example answer: {@code 0}
     *
     * @param asMacs up to 8 MAC addresses; one that is not on the list is no failure. With {@code
     *     null}, or without any text in it, nothing is done
     * @return 0 when the hosts are off the list, and also, with nothing done, when the filter's
     *     mode is not the trust list; -1 when there are more than 8, or when a process doesn't
     *     answer or refuses
     */
    public native int deleteLANHostFromTrustList(String[] asMacs);

    /**
     * Bars hosts from the gateway's storage. Asks the process {@code gulm} for the mode and both
     * tables of the MAC filter and then for its records of hosts, and {@code osgi_proxy} for each
     * change, at most 5 seconds each. A host without a record gets one; a host that is barred
     * already is left alone.
     *
     * <p>A change sets the host's right to use the internet as well, to what follows from the MAC
     * filter's mode and list. That is why nothing is changed when the filter can't be read.
     *
     * <p>When a change fails, the hosts that were barred before it are allowed the storage again. A
     * record that was made for one of them stays, with the storage allowed, and so does what was
     * set of their right to use the internet.
     *
     * <p>Example answer: {@code 0}
     *
     * @param asMacs up to 128 MAC addresses; with {@code null}, or without any text in it, nothing
     *     is done. An empty element beside one with text is barred like a host, in a record with an
     *     empty MAC address
     * @return 0 when all are barred or none was given; -1 when there are more than 128, or when a
     *     process doesn't answer or refuses, be it while the MAC filter is read, the records, or
     *     when one is changed
     */
    public native int addLANHostToStorageBlackList(String[] asMacs);

    /**
     * Gives hosts access to the gateway's storage again, or all hosts when no text is given. Asks
     * the process {@code gulm} for the mode and both tables of the MAC filter and then for its
     * records of hosts, and {@code osgi_proxy} for each change, at most 5 seconds each.
     *
     * <p>As with {@link #addLANHostToStorageBlackList}, a change sets the host's right to use the
     * internet as well, and nothing is changed when the MAC filter can't be read. When a change
     * fails, the hosts that were given access before it are barred again.
     *
     * <p>Example answer: {@code 0}
     *
     * @param asMacs up to 8 MAC addresses; a host without a record is no failure. {@code null}, and
     *     an array without any text in it, stand for all hosts that have a record. An empty element
     *     beside one with text stands for the record with an empty MAC address
     * @return 0 when the hosts have access; -1 when there are more than 8, when memory runs out
     *     before any of them is known, or when a process doesn't answer or refuses, be it while the
     *     MAC filter is read, the records, or when one is changed
     */
    public native int deleteLANHostFromStorageBlackList(String[] asMacs);
}
