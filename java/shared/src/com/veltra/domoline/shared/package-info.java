/** What the programs on a PC have in common; each has it in its own jar. */
package com.veltra.domoline.shared;
